; The installer of the program, for one user and without administrator rights; scripts/package builds it and gives
;   PRODUCT VERSION ICON OUTPUT    texts
;   STAGED   the folder that it installs
;   FILES    a script with the macro ForEachFile, which does a macro for each file of that folder
; Silent: /S, with /D=FOLDER as the last word for another folder; /AUTOSTART=0 leaves "start with Windows" out.
; The uninstaller asks about the user's data; silently it keeps them, unless /DATA=0 is given.
; Exit status of both: 0, 1 when the user gave up, 2 when the program runs or could not be replaced. Of the installer also
; 3: the folder holds something else, and nothing was written. Both touch files of their own only: ownfiles.nsh.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
Name "${PRODUCT}"
BrandingText "${PRODUCT} ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\${PRODUCT}"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}"
!define RUN "Software\Microsoft\Windows\CurrentVersion\Run"
InstallDirRegKey HKCU "${UNINSTALL}" "InstallLocation"
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${PRODUCT}"
VIAddVersionKey "FileDescription" "${PRODUCT} installer"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "The Trawlbeam authors, MIT licence"

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include WordFunc.nsh
!include "${FILES}"
!include "${__FILEDIR__}\ownfiles.nsh"
!insertmacro OwnFileFunctions ""
!insertmacro OwnFileFunctions "un."
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_NODESC
!define MUI_FINISHPAGE_RUN "$INSTDIR\${PRODUCT}.exe"
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE AskForOtherFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Goes on when neither the program nor its updater runs; the user may leave the program and try again.
!macro RefuseWhileRunning
  ${Do}
    FindWindow $0 "ThunderRT6FormDC" "Trawlbeam Tray"
    ${If} $0 == 0
      FindWindow $0 "ThunderRT6FormDC" "${PRODUCT} Updater"
    ${EndIf}
    ${If} $0 == 0
      ${ExitDo}
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION \
      "${PRODUCT} is running. Please leave it by $\"Exit$\" in the menu of its icon, then try again." \
      /SD IDCANCEL IDRETRY +3
    SetErrorLevel 2
    Quit
  ${Loop}
!macroend

!macro AskedNot RESULT NAME
  ; "1" when /NAME=0 is not on the command line
  ${GetParameters} $R0
  ClearErrors
  ${GetOptions} $R0 "/${NAME}=" $R1
  StrCpy ${RESULT} "1"
  ${IfNot} ${Errors}
  ${AndIf} $R1 == "0"
    StrCpy ${RESULT} "0"
  ${EndIf}
!macroend

; A library that a browser has loaded can be moved, but not replaced. What cannot be installed is put back as a whole.
!macro InstallFile FILE
  ${If} ${FileExists} "$INSTDIR\${FILE}"
    Rename "$INSTDIR\${FILE}" "$INSTDIR\${FILE}.old~"
  ${EndIf}
  File "${STAGED}/${FILE}"
!macroend
!macro PutFileBack FILE
  ${If} ${FileExists} "$INSTDIR\${FILE}.old~"
    Delete "$INSTDIR\${FILE}"
    Rename "$INSTDIR\${FILE}.old~" "$INSTDIR\${FILE}"
  ${EndIf}
!macroend
!macro DropOldFile FILE
  Delete "$INSTDIR\${FILE}.old~"
!macroend
!macro RemoveFile FILE
  Delete "$INSTDIR\${FILE}"
  Delete "$INSTDIR\${FILE}.tmp~"
!macroend

Function AskForOtherFolder
  Call IsForUs
  ${If} $0 == "0"
    MessageBox MB_OK|MB_ICONEXCLAMATION \
      "$INSTDIR holds files of something else.$\r$\n$\r$\nPlease choose a folder that is empty or not there yet, or that holds ${PRODUCT} already."
    Abort
  ${EndIf}
FunctionEnd

Section "${PRODUCT}" SectionProgram
  SectionIn RO
  Call IsForUs
  ${If} $0 == "0"
    SetErrorLevel 3
    Quit
  ${EndIf}
  !insertmacro RefuseWhileRunning
  SetOutPath "$INSTDIR"
  SetOverwrite try
  !insertmacro ForEachFile DropOldFile
  ClearErrors
  !insertmacro ForEachFile InstallFile
  ${If} ${Errors}
    !insertmacro ForEachFile PutFileBack
    MessageBox MB_OK|MB_ICONSTOP "Some files of ${PRODUCT} could not be replaced, so it stays as it was. Close what uses them and install again." /SD IDOK
    SetErrorLevel 2
    Abort
  ${EndIf}
  !insertmacro ForEachFile DropOldFile
  CreateDirectory "$INSTDIR\Data"
  ; What an earlier version had staged for itself is older than this.
  Call DropStaged
  CreateShortCut "$SMPROGRAMS\${PRODUCT}.lnk" "$INSTDIR\${PRODUCT}.exe"
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "${PRODUCT}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\${PRODUCT}.exe"
  WriteRegStr HKCU "${UNINSTALL}" "Publisher" "The Trawlbeam authors"
  WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

Section "Start with Windows" SectionAutostart
  WriteRegStr HKCU "${RUN}" "${PRODUCT}" '"$INSTDIR\${PRODUCT}.exe"'
SectionEnd

; The choice holds for an installation over an earlier one too.
Section "-WithoutAutostart"
  ${IfNot} ${SectionIsSelected} ${SectionAutostart}
    DeleteRegValue HKCU "${RUN}" "${PRODUCT}"
  ${EndIf}
SectionEnd

Function .onInit
  SetRegView 64
  !insertmacro AskedNot $0 "AUTOSTART"
  ; Who has it installed without is not asked anew by a silent installation.
  ReadRegStr $1 HKCU "${UNINSTALL}" "InstallLocation"
  ReadRegStr $2 HKCU "${RUN}" "${PRODUCT}"
  ${If} $1 != ""
  ${AndIf} $2 == ""
    StrCpy $0 "0"
  ${EndIf}
  ${If} $0 == "0"
    !insertmacro UnselectSection ${SectionAutostart}
  ${EndIf}
FunctionEnd

Function un.onInit
  SetRegView 64
FunctionEnd

Section "un.${PRODUCT}"
  !insertmacro RefuseWhileRunning
  ; The program registers the browser's helper, so the helper goes with it.
  ExecWait '"$SYSDIR\regsvr32.exe" /s /u "$INSTDIR\TrawlbeamHelper.dll"'
  !insertmacro ForEachFile DropOldFile
  ClearErrors
  !insertmacro ForEachFile RemoveFile
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "Some files of ${PRODUCT} are in use. Close what uses them and uninstall again." /SD IDOK
    SetErrorLevel 2
    Abort
  ${EndIf}
  Delete "$INSTDIR\Uninstall.exe"
  Delete "$SMPROGRAMS\${PRODUCT}.lnk"
  DeleteRegKey HKCU "${UNINSTALL}"
  DeleteRegValue HKCU "${RUN}" "${PRODUCT}"
  ; Staged and saved program files are no data of the user.
  Call un.DropStaged
  Call un.DropBackups
  RMDir "$INSTDIR\Updates"
  StrCpy $1 "keep"
  ${If} ${Silent}
    !insertmacro AskedNot $0 "DATA"
    ${If} $0 == "0"
      StrCpy $1 "remove"
    ${EndIf}
  ${Else}
    MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 \
      "Remove your settings, allowed sites, submissions and logs too?" IDNO +2
    StrCpy $1 "remove"
  ${EndIf}
  ${If} $1 == "remove"
    !insertmacro ForEachDataFile DeleteDataFile
  ${EndIf}
  ; Each is gone if it is empty.
  RMDir "$INSTDIR\Data\InProcess\Error"
  RMDir "$INSTDIR\Data\InProcess"
  RMDir "$INSTDIR\Data"
  RMDir "$INSTDIR\Log"
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"
SectionEnd
