#pragma once

// What the shared library of framework/ and host/ shows to the module and to every host; all else stays inside it.
#if defined(_WIN32)
#if defined(VEXA_BUILDS_HOST)
#define VEXA_API __declspec(dllexport)
#else
#define VEXA_API __declspec(dllimport)
#endif
#else
#define VEXA_API __attribute__((visibility("default")))
#endif
