#pragma once

// What VEXA_gps shows to a host; all else stays inside it.
#if defined(_WIN32)
#if defined(VEXA_BUILDS_GPS)
#define VEXA_GPS_API __declspec(dllexport)
#else
#define VEXA_GPS_API __declspec(dllimport)
#endif
#else
#define VEXA_GPS_API __attribute__((visibility("default")))
#endif
