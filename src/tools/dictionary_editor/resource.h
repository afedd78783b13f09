// Ids of the window's controls and commands. Menu commands of the keyboard are the buttons' own ids.
#ifndef NELVA_TOOLS_DICTIONARY_EDITOR_RESOURCE_H
#define NELVA_TOOLS_DICTIONARY_EDITOR_RESOURCE_H

#define IDD_EDITOR 100
#define IDD_QUESTION 101
#define IDR_KEYS 102

#define IDC_FIND_LABEL 1001
#define IDC_FIND 1002
#define IDC_WORDS_LABEL 1003
#define IDC_WORDS 1004
#define IDC_WORD_LABEL 1005
#define IDC_WORD 1006
#define IDC_TYPE_LABEL 1007
#define IDC_TYPE 1008
#define IDC_SAID_LABEL 1009
#define IDC_SAID 1010
#define IDC_CHECK_LABEL 1011
#define IDC_CHECK 1012
#define IDC_VOICE_LABEL 1013
#define IDC_VOICE 1014
#define IDC_STATUS 1015

#define IDC_ADD 1020
#define IDC_CHANGE 1021
#define IDC_REMOVE 1022
#define IDC_NEW 1023
#define IDC_UNDO 1024
#define IDC_REDO 1025
#define IDC_LISTEN 1026
#define IDC_SAVE 1027

#define IDC_QUESTION 1040
#define IDC_FIRST 1041
#define IDC_SECOND 1042

#define IDK_FIND 1050

#endif
