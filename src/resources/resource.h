// Numbers of the library's resources, for the code and for acctkit.rc.
#pragma once

#define IDC_STATIC (-1)

// The library's icon, and the picture at the left of every page.
#define IDI_ACCTKIT 128
#define IDB_WIZARD 129

// Controls. A field has the same number on every page, whatever its content is.
#define IDC_CHOICE 1007
#define IDC_FIELD_1 1009
#define IDC_FIELD_2 1010
#define IDC_CLIENT_ICON 1012
#define IDC_FORUM_SERVER 2001
#define IDC_SQUARE_SERVER 2002
#define IDC_BUILD_STAMP 2005

// Pages, by their classes.
#define IDD_SET_MAILER_TOP1 2011
#define IDD_SET_MAILER_TOP2 135
#define IDD_SET_MAILER_SELECT 130
#define IDD_SET_MAILER_ID 133
#define IDD_SET_2ND_MAILER_ID 107
#define IDD_SET_MAILER_END 134

#define IDD_SET_NEWS_TOP 136
#define IDD_SET_NEWS_SELECT 142
#define IDD_SET_NEWS_ID 138
#define IDD_SET_NEWS_SERVER 141
#define IDD_SET_NEWS_END 140

#define IDD_SET_KERM_MAILER_TOP 2017
#define IDD_SET_KERM_MAILER_SELECT 2015
#define IDD_SET_KERM_MAILER_ID 2013
#define IDD_SET_KERM_SERVER 2016
#define IDD_SET_KERM_END 2014

#define IDD_SET_SHORT_MAILER_SELECT 2019
#define IDD_SET_SHORT_MAILER_ID 2018
