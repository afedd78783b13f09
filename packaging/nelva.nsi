; The installer of Nelva for 64-bit Windows. `./nelva package` calls makensis with STAGE (the content), CONTENT (what
; content.cmake wrote about it), VERSION, VERSION4 and OUTPUT. docs/administrators.md describes the options.

Unicode true
Target amd64-unicode
ManifestDPIAware true
ManifestSupportedOS Win7 Win8 Win8.1 Win10
SetCompressor /SOLID lzma
SetDateSave off ; files get the time of installation: the time of a build is nobody's business
RequestExecutionLevel admin

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include Sections.nsh
!include WordFunc.nsh

!define SOFTWARE "Software\Nelva"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Nelva"
!define TOKENS "Software\Microsoft\Speech\Voices\Tokens"
!define CLASS_ID "{A174EDD5-7D96-4DE4-BACE-EF267627D834}"
!define CLASS "Software\Classes\CLSID\${CLASS_ID}"
!define NOT_ADDED "$INSTDIR\voices-not-added.txt" ; which could not be, and why
!define OTHER_LANGUAGES "Data of other languages"

Name "Nelva"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Nelva"
InstallDirRegKey HKLM "${SOFTWARE}" "InstallDir"
BrandingText "Nelva ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION4}"
VIAddVersionKey ProductName "Nelva"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Installer of the Nelva voices"
VIAddVersionKey LegalCopyright "MIT and GPL-3.0-or-later; see the documentation"

Var LexiconFolder
Var Languages ; as on the command line; empty: not said
Var Added ; how many voices were
Var NotAdded ; the names of those that could not be, with commas between them

!define MUI_ABORTWARNING
!define MUI_ICON "${NSISDIR}/Contrib/Graphics/Icons/modern-install.ico"
!define MUI_UNICON "${NSISDIR}/Contrib/Graphics/Icons/modern-uninstall.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${NSISDIR}/Contrib/Graphics/Wizard/win.bmp"
!define MUI_COMPONENTSPAGE_NODESC
!define MUI_WELCOMEPAGE_TITLE "Nelva voices"
!define MUI_WELCOMEPAGE_TEXT "This installs the Nelva voices, which speak in every 64-bit program that uses Windows' \
speech interface.$\r$\n$\r$\nAn older version is replaced; programs that speak at this moment go on with it until they \
are started again.$\r$\n$\r$\n$_CLICK"
!define MUI_COMPONENTSPAGE_TEXT_TOP "Choose the voices. Further ones can be added later by running this again."
!define MUI_FINISHPAGE_TEXT "The voices are there. Programs list them when they are started the next time."
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; ---- Programs that may be running, libraries that hosts may have loaded ----

; Makes way for a file of bin: one in use can be renamed, not deleted. What was renamed goes at the next run of the
; installer, the uninstaller or the system. In: $R0, its path.
!macro MakeWay UN
Function ${UN}MakeWay
  ${IfNot} ${FileExists} "$R0"
    Return
  ${EndIf}
  ClearErrors
  Delete "$R0"
  ${IfNot} ${Errors}
    Return
  ${EndIf}
  StrCpy $R1 0
  ${While} ${FileExists} "$R0.$R1.old"
    IntOp $R1 $R1 + 1
  ${EndWhile}
again:
  ClearErrors
  Rename "$R0" "$R0.$R1.old"
  ${If} ${Errors}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$R0 is in use and cannot be replaced or removed. Close the programs that have \
it open, and try again." /SD IDCANCEL IDRETRY again
    SetErrorLevel 5
    Abort
  ${EndIf}
  Delete /REBOOTOK "$R0.$R1.old"
FunctionEnd
!macroend
!insertmacro MakeWay ""
!insertmacro MakeWay "un."

!macro InstallProgram NAME
  StrCpy $R0 "$INSTDIR\bin\${NAME}"
  Call MakeWay
  File "${STAGE}/bin/${NAME}"
!macroend

; A voice's token, from what nelva-voices finds in the voice file and asks Windows. A lexicon that the token names stays.
; One that cannot be added keeps nobody from the others: the end of the installation tells.
!macro AddVoice NAME ARGUMENTS
  nsExec::ExecToStack '"$INSTDIR\bin\nelva-voices.exe" add --quiet ${ARGUMENTS}'
  Pop $0
  Pop $1
  ${If} $0 == 0
    IntOp $Added $Added + 1
  ${Else}
    StrCpy $2 "${NAME}"
    Call NoteNotAdded
  ${EndIf}
!macroend

; In: $0, what nelva-voices ended with; $1, what it said; $2, the voice.
Function NoteNotAdded
  ${If} $NotAdded != ""
    StrCpy $NotAdded "$NotAdded, "
  ${EndIf}
  StrCpy $NotAdded "$NotAdded$2"
  FileOpen $3 "${NOT_ADDED}" a
  FileSeek $3 0 END
  FileWriteUTF16LE /BOM $3 "$2 (nelva-voices ends with $0)$\r$\n$1$\r$\n"
  FileClose $3
FunctionEnd

; None of them: a failure. Some: the person has voices, and is told which are missing.
Function TellNotAdded
  ${If} $NotAdded == ""
    Return
  ${EndIf}
  StrCpy $0 $NotAdded 500 ; a message has its limits; the file has all of them
  ${If} $Added == 0
    SetErrorLevel 4
    MessageBox MB_OK|MB_ICONSTOP "No voice can be added: $0.$\r$\n$\r$\nThe reasons are in ${NOT_ADDED}." /SD IDOK
    Abort
  ${EndIf}
  SetErrorLevel 6
  MessageBox MB_OK|MB_ICONEXCLAMATION "The voices are installed except for these, which cannot be added: $0.$\r$\n\
$\r$\nThe reasons are in ${NOT_ADDED}." /SD IDOK
FunctionEnd

!macro RemoveProgram NAME
  StrCpy $R0 "$INSTDIR\bin\${NAME}"
  Call un.MakeWay
!macroend

; ---- What is common to both directions ----

!macro FindLexicons UN
Function ${UN}FindLexicons
  SetRegView 64
  SetShellVarContext all
  StrCpy $LexiconFolder "$APPDATA\Nelva\lexicons"
FunctionEnd
!macroend
!insertmacro FindLexicons ""
!insertmacro FindLexicons "un."

!include "${CONTENT}"

; ---- Sections ----

Section "-Before"
  SetOutPath "$INSTDIR"
  StrCpy $Added 0
  StrCpy $NotAdded ""
  Delete "${NOT_ADDED}"
  Delete "$INSTDIR\bin\*.old"
  Call RemoveFromOldFolder
  Call TakeAwayUnchosen
  Call WriteEntry
SectionEnd

Section "Programs and documentation" SEC_CORE
  SectionIn RO
  !insertmacro InstallCore
SectionEnd

!insertmacro InstallVoices

Section "-After"
  CreateDirectory "$LexiconFolder"
  ; Everybody may correct a word.
  nsExec::Exec '"$SYSDIR\icacls.exe" "$LexiconFolder" /grant *S-1-5-32-545:(OI)(CI)M'
  Pop $0
  ClearErrors
  ExecWait '"$SYSDIR\regsvr32.exe" /s "$INSTDIR\bin\nelva_sapi.dll"' $0
  ReadRegStr $1 HKLM "${CLASS}\InprocServer32" ""
  ${If} $0 != 0
  ${OrIf} $1 != "$INSTDIR\bin\nelva_sapi.dll"
    SetErrorLevel 4
    MessageBox MB_OK|MB_ICONSTOP "Windows does not register the engine (regsvr32 says $0)." /SD IDOK
    Abort
  ${EndIf}

  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKLM "${UNINSTALL}" "EstimatedSize" $0
  SetRebootFlag false ; what is left of a replaced file hinders nobody
  Call TellNotAdded
SectionEnd

; ---- Which voices ----

; Selects a part if the list in $R8 has its name or its language's, or is "all". A name that was used is taken out of
; the list in $R7, so that what is left there is known to nobody.
!macro SelectVoice SECTION NAME BASE
  ${WordReplace} ",$R8," ",${NAME}," "," "+" $R5
  ${WordReplace} ",$R8," ",${BASE}," "," "+" $R6
  ${If} $R8 == "all"
  ${OrIf} $R5 != ",$R8,"
  ${OrIf} $R6 != ",$R8,"
    !insertmacro SelectSection ${SECTION}
  ${Else}
    !insertmacro UnselectSection ${SECTION}
  ${EndIf}
  ${WordReplace} "$R7" ",${NAME}," "," "+" $R7
!macroend

; The language's name goes only after all of its voices had their turn.
!macro ForgetBase SECTION NAME BASE
  ${WordReplace} "$R7" ",${BASE}," "," "+" $R7
!macroend

; In: $R8, names with commas between them.
Function SelectVoices
  StrCpy $R7 ",$R8,"
  !insertmacro ForEachVoice SelectVoice
  !insertmacro ForEachVoice ForgetBase
FunctionEnd

Function .onInit
  Call FindLexicons
  ${GetParameters} $R0
  ClearErrors
  ${GetOptions} $R0 "/LANGUAGES=" $Languages
  ${IfNot} ${Errors}
    StrCpy $R8 $Languages
    Call SelectVoices
    ${If} $R8 != "all"
    ${AndIf} $R7 != ","
      StrCpy $R7 $R7 -1 1
      SetErrorLevel 2
      MessageBox MB_OK|MB_ICONSTOP "/LANGUAGES: there is no voice $R7." /SD IDOK
      Abort
    ${EndIf}
  ${Else}
    ; An upgrade keeps what was chosen before.
    ReadRegStr $R8 HKLM "${SOFTWARE}" "Languages"
    ReadRegStr $R1 HKLM "${SOFTWARE}" "InstallDir"
    ${If} $R1 != ""
      Call SelectVoices
    ${EndIf}
  ${EndIf}
FunctionEnd

; A part's name is put into $R9 if it is chosen.
!macro NoteVoice SECTION NAME BASE
  ${If} ${SectionIsSelected} ${SECTION}
    StrCpy $R9 "$R9,${NAME}"
  ${EndIf}
!macroend

; The voices and the folder are noted before anything can go wrong, and the uninstaller is there: what an installation
; that failed has left can be taken away, or completed by the next one.
Function WriteEntry
  StrCpy $R9 ""
  !insertmacro ForEachVoice NoteVoice
  StrCpy $R9 $R9 "" 1
  WriteRegStr HKLM "${SOFTWARE}" "InstallDir" "$INSTDIR"
  WriteRegStr HKLM "${SOFTWARE}" "Languages" "$R9"
  WriteRegStr HKLM "${SOFTWARE}" "Version" "${VERSION}"

  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKLM "${UNINSTALL}" "DisplayName" "Nelva voices"
  WriteRegStr HKLM "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL}" "DisplayIcon" "$INSTDIR\uninstall.exe"
  WriteRegStr HKLM "${UNINSTALL}" "Publisher" "Nelva"
  WriteRegStr HKLM "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL}" "NoRepair" 1
FunctionEnd

; In: $R1, a voice's id. Takes its token away if its data lies in our folder: another engine's may have the same name.
Function TakeTokenAway
  StrLen $R3 "$INSTDIR\"
  ReadRegStr $R2 HKLM "${TOKENS}\$R1" "libPath"
  StrCpy $R2 $R2 $R3
  ${If} $R2 == "$INSTDIR\"
    DeleteRegKey HKLM "${TOKENS}\$R1"
  ${EndIf}
FunctionEnd

Function TakeAwayUnchosen
  !insertmacro TakeAwayUnchosen
FunctionEnd

; What was installed into another folder goes first; lexicons stay.
Function RemoveFromOldFolder
  ReadRegStr $R0 HKLM "${SOFTWARE}" "InstallDir"
  ${If} $R0 == ""
  ${OrIf} $R0 == $INSTDIR
  ${OrIfNot} ${FileExists} "$R0\uninstall.exe"
    Return
  ${EndIf}
  ExecWait '"$R0\uninstall.exe" /S _?=$R0' $R1
  Delete "$R0\uninstall.exe"
  RMDir "$R0"
FunctionEnd

; ---- Uninstalling ----

; Voices of ours are those whose data lies in our folder, whoever added them, and those of our class whose data is nowhere.
Function un.RemoveTokens
  StrLen $R3 "$INSTDIR\"
  StrCpy $R0 0
  ${Do}
    EnumRegKey $R1 HKLM "${TOKENS}" $R0
    ${If} $R1 == ""
      ${ExitDo}
    ${EndIf}
    ReadRegStr $R2 HKLM "${TOKENS}\$R1" "libPath"
    ReadRegStr $R4 HKLM "${TOKENS}\$R1" "CLSID"
    ${If} $R2 == ""
    ${OrIfNot} ${FileExists} "$R2\*.*"
      StrCpy $R5 nowhere
    ${Else}
      StrCpy $R5 somewhere
    ${EndIf}
    StrCpy $R2 $R2 $R3
    ${If} $R2 == "$INSTDIR\"
    ${OrIf} "$R4 $R5" == "${CLASS_ID} nowhere"
      DeleteRegKey HKLM "${TOKENS}\$R1"
    ${Else}
      IntOp $R0 $R0 + 1
    ${EndIf}
  ${Loop}
FunctionEnd

; The server leaves its class in the registry unless the same process registered it, so it is removed here, if it is
; this installation's.
Function un.RemoveClass
  ReadRegStr $0 HKLM "${CLASS}\InprocServer32" ""
  ${If} $0 == "$INSTDIR\bin\nelva_sapi.dll"
    DeleteRegKey HKLM "${CLASS}"
  ${EndIf}
FunctionEnd

Function un.onInit
  Call un.FindLexicons
FunctionEnd

Function un.RemoveLexicons
  ${GetParameters} $R0
  ClearErrors
  ${GetOptions} $R0 "/LEXICONS" $R1
  ${If} ${Errors}
    ${If} ${FileExists} "$LexiconFolder\*.pls"
      MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "Remove the corrected words too?$\r$\n$\r$\n\
They are in $LexiconFolder, and a later installation finds them again." /SD IDNO IDYES remove
    ${EndIf}
    Goto folders
  ${EndIf}
remove:
  Delete "$LexiconFolder\*.pls"
  Delete "$LexiconFolder\*.pls.new*" ; what a crash in the midst of saving has left
folders:
  RMDir "$LexiconFolder"
  RMDir "$APPDATA\Nelva"
FunctionEnd

Section "Uninstall"
  Call un.RemoveTokens
  Call un.RemoveClass
  Call un.RemoveLexicons
  !insertmacro RemoveFiles
  Delete "$INSTDIR\bin\*.old"
  Delete "$INSTDIR\uninstall.exe"
  Delete "${NOT_ADDED}"
  RMDir "$INSTDIR\bin"
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"
  ${If} ${FileExists} "$INSTDIR\*.*"
    RMDir /REBOOTOK "$INSTDIR\bin"
    RMDir /REBOOTOK "$INSTDIR"
  ${EndIf}
  DeleteRegKey HKLM "${UNINSTALL}"
  DeleteRegKey HKLM "${SOFTWARE}"
SectionEnd
