#pragma once

// Ids of TestDialogs.rc.
#define IDD_CONTROLS 100
#define IDD_PAGE 101
#define IDD_HOST 102
#define IDD_UNKNOWN_CLASS 103
#define IDD_EMPTY 104
#define IDD_GRAPH 105

#define IDC_NAME 1001
#define IDC_FACTOR 1002
#define IDC_COUNT 1003
#define IDC_USE 1004
#define IDC_LINEAR 1005
#define IDC_ENVELOPE 1006
#define IDC_BOTH 1007
#define IDC_KIND 1008
#define IDC_LIST 1009
#define IDC_CHECKS 1010
#define IDC_TABLE 1011
#define IDC_TABS 1012
#define IDC_SPIN 1013
#define IDC_ADD 1014
#define IDC_PLACE 1015
#define IDC_PAGE_EDIT 1016
#define IDC_PAGE_BUTTON 1017
#define IDC_APPLY 0x400 // 1024
