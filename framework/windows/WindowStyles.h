#pragma once

#include "framework/windows/WindowTypes.h"

/// Styles of windows, dialogs and controls, with the system's own names and values.

// Every window.
inline constexpr UINT WS_OVERLAPPED = 0x00000000;
inline constexpr UINT WS_POPUP = 0x80000000;
inline constexpr UINT WS_CHILD = 0x40000000;
inline constexpr UINT WS_MINIMIZE = 0x20000000;
inline constexpr UINT WS_VISIBLE = 0x10000000;
inline constexpr UINT WS_DISABLED = 0x08000000;
inline constexpr UINT WS_CLIPSIBLINGS = 0x04000000;
inline constexpr UINT WS_CLIPCHILDREN = 0x02000000;
inline constexpr UINT WS_BORDER = 0x00800000;
inline constexpr UINT WS_DLGFRAME = 0x00400000;
inline constexpr UINT WS_CAPTION = 0x00C00000;
inline constexpr UINT WS_VSCROLL = 0x00200000;
inline constexpr UINT WS_HSCROLL = 0x00100000;
inline constexpr UINT WS_SYSMENU = 0x00080000;
inline constexpr UINT WS_THICKFRAME = 0x00040000;
inline constexpr UINT WS_GROUP = 0x00020000;
inline constexpr UINT WS_TABSTOP = 0x00010000;
inline constexpr UINT WS_MINIMIZEBOX = 0x00020000;
inline constexpr UINT WS_MAXIMIZEBOX = 0x00010000;
inline constexpr UINT WS_EX_DLGMODALFRAME = 0x00000001;
inline constexpr UINT WS_EX_CLIENTEDGE = 0x00000200;
inline constexpr UINT WS_EX_STATICEDGE = 0x00020000;
inline constexpr UINT WS_EX_CONTROLPARENT = 0x00010000;
inline constexpr UINT WS_EX_TOOLWINDOW = 0x00000080;
inline constexpr UINT WS_EX_TRANSPARENT = 0x00000020;
inline constexpr UINT WS_EX_APPWINDOW = 0x00040000;

// Dialogs.
inline constexpr UINT DS_SETFONT = 0x0040;
inline constexpr UINT DS_MODALFRAME = 0x0080;
inline constexpr UINT DS_FIXEDSYS = 0x0008;
inline constexpr UINT DS_SHELLFONT = 0x0048;
inline constexpr UINT DS_CONTROL = 0x0400;
inline constexpr UINT DS_CENTER = 0x0800;

// Static texts.
inline constexpr UINT SS_LEFT = 0x00;
inline constexpr UINT SS_CENTER = 0x01;
inline constexpr UINT SS_RIGHT = 0x02;
inline constexpr UINT SS_BLACKFRAME = 0x07;
inline constexpr UINT SS_SIMPLE = 0x0B;
inline constexpr UINT SS_LEFTNOWORDWRAP = 0x0C;
inline constexpr UINT SS_ETCHEDHORZ = 0x10;
inline constexpr UINT SS_ETCHEDFRAME = 0x12;
inline constexpr UINT SS_NOPREFIX = 0x80;
inline constexpr UINT SS_NOTIFY = 0x100;
inline constexpr UINT SS_CENTERIMAGE = 0x200;
inline constexpr UINT SS_SUNKEN = 0x1000;

// Buttons.
inline constexpr UINT BS_PUSHBUTTON = 0x0;
inline constexpr UINT BS_DEFPUSHBUTTON = 0x1;
inline constexpr UINT BS_CHECKBOX = 0x2;
inline constexpr UINT BS_AUTOCHECKBOX = 0x3;
inline constexpr UINT BS_RADIOBUTTON = 0x4;
inline constexpr UINT BS_3STATE = 0x5;
inline constexpr UINT BS_AUTO3STATE = 0x6;
inline constexpr UINT BS_GROUPBOX = 0x7;
inline constexpr UINT BS_AUTORADIOBUTTON = 0x9;
inline constexpr UINT BS_OWNERDRAW = 0xB;
inline constexpr UINT BS_TYPEMASK = 0xF;
inline constexpr UINT BS_LEFTTEXT = 0x20;
inline constexpr UINT BS_PUSHLIKE = 0x1000;
inline constexpr UINT BS_MULTILINE = 0x2000;
inline constexpr UINT BS_NOTIFY = 0x4000;

// Edits.
inline constexpr UINT ES_LEFT = 0x0;
inline constexpr UINT ES_CENTER = 0x1;
inline constexpr UINT ES_RIGHT = 0x2;
inline constexpr UINT ES_MULTILINE = 0x4;
inline constexpr UINT ES_AUTOVSCROLL = 0x40;
inline constexpr UINT ES_AUTOHSCROLL = 0x80;
inline constexpr UINT ES_NOHIDESEL = 0x100;
inline constexpr UINT ES_READONLY = 0x800;
inline constexpr UINT ES_WANTRETURN = 0x1000;
inline constexpr UINT ES_NUMBER = 0x2000;

// Combo boxes.
inline constexpr UINT CBS_SIMPLE = 0x1;
inline constexpr UINT CBS_DROPDOWN = 0x2;
inline constexpr UINT CBS_DROPDOWNLIST = 0x3;
inline constexpr UINT CBS_AUTOHSCROLL = 0x40;
inline constexpr UINT CBS_SORT = 0x100;
inline constexpr UINT CBS_HASSTRINGS = 0x200;
inline constexpr UINT CBS_NOINTEGRALHEIGHT = 0x400;

// List boxes.
inline constexpr UINT LBS_NOTIFY = 0x1;
inline constexpr UINT LBS_SORT = 0x2;
inline constexpr UINT LBS_MULTIPLESEL = 0x8;
inline constexpr UINT LBS_OWNERDRAWFIXED = 0x10;
inline constexpr UINT LBS_OWNERDRAWVARIABLE = 0x20;
inline constexpr UINT LBS_HASSTRINGS = 0x40;
inline constexpr UINT LBS_NOINTEGRALHEIGHT = 0x100;
inline constexpr UINT LBS_EXTENDEDSEL = 0x800;
inline constexpr UINT LBS_NOSEL = 0x4000;

// List controls.
inline constexpr UINT LVS_REPORT = 0x1;
inline constexpr UINT LVS_SINGLESEL = 0x4;
inline constexpr UINT LVS_SHOWSELALWAYS = 0x8;
inline constexpr UINT LVS_NOCOLUMNHEADER = 0x4000;
inline constexpr UINT LVS_NOSORTHEADER = 0x8000;
inline constexpr UINT LVS_EX_GRIDLINES = 0x1;
inline constexpr UINT LVS_EX_CHECKBOXES = 0x4;
inline constexpr UINT LVS_EX_FULLROWSELECT = 0x20;

// Tab controls.
inline constexpr UINT TCS_TABS = 0x0;
inline constexpr UINT TCS_MULTILINE = 0x200;
inline constexpr UINT TCS_FOCUSNEVER = 0x8000;

// Spin buttons.
inline constexpr UINT UDS_WRAP = 0x1;
inline constexpr UINT UDS_SETBUDDYINT = 0x2;
inline constexpr UINT UDS_ALIGNRIGHT = 0x4;
inline constexpr UINT UDS_ALIGNLEFT = 0x8;
inline constexpr UINT UDS_AUTOBUDDY = 0x10;
inline constexpr UINT UDS_ARROWKEYS = 0x20;
inline constexpr UINT UDS_HORZ = 0x40;
inline constexpr UINT UDS_NOTHOUSANDS = 0x80;
