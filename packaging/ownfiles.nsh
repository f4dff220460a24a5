; Which files are ours in the folder that holds the program. Whatever else lies there belongs to somebody else and is
; neither read nor touched: nothing is removed by a pattern wider than these, and a folder goes only when it is empty.
; FILES' macro ForEachFile has the program's own files.

; What the program writes in the course of its work: the user's settings, lists, submissions, logs. DO gets the folder
; below the program's, "" for that itself, and the name; of names with a number what stands before it, how many digits it
; has and what stands behind it.
!macro ForEachDataFile DO
  !insertmacro ${DO} "" "${PRODUCT}.ini" "" ""
  !insertmacro ${DO} "" "TB.BIN" "" ""
  !insertmacro ${DO} "\Data" "defaults.bin" "" ""
  !insertmacro ${DO} "\Data" "reference.bin" "" ""
  !insertmacro ${DO} "\Data" "ListGuard.bin" "" ""
  !insertmacro ${DO} "\Data" "SiteOverrides.xml" "" ""
  !insertmacro ${DO} "\Data" "submissions.xml" "" ""
  !insertmacro ${DO} "\Data" "TBDB" "12" ".BIN"
  ; Queue files are written here and moved.
  !insertmacro ${DO} "\Data" "" "any" ".E"
  !insertmacro ${DO} "\Data" "" "any" ".U"
  !insertmacro ${DO} "\Data\InProcess" "" "any" ".E"
  !insertmacro ${DO} "\Data\InProcess" "" "any" ".U"
  !insertmacro ${DO} "\Data\InProcess\Error" "" "any" ".E"
  !insertmacro ${DO} "\Data\InProcess\Error" "" "any" ".U"
  !insertmacro ${DO} "\Log" "${PRODUCT}" "6" ".log"
  !insertmacro ${DO} "\Log" "${PRODUCT}" "14" ".dmp"
  !insertmacro ${DO} "\Log" "tbUpdater" "14" ".dmp"
!macroend

; What each of them may have beside it: unfinished, the copy of one that did not load, the one before.
!macro ForEachCompanion DO NAME
  !insertmacro ${DO} "${NAME}"
  !insertmacro ${DO} "${NAME}.tmp~"
  !insertmacro ${DO} "${NAME}.bad"
  !insertmacro ${DO} "${NAME}.bad.tmp~"
  !insertmacro ${DO} "${NAME}.last"
  !insertmacro ${DO} "${NAME}.last.tmp~"
!macroend

; Macros that are functions to call need one of each in the installer and in the uninstaller, whose names begin with "un.".
!macro OwnFileFunctions UN

; The name that the open manifest $R0 gives to its next file, in $R1; empty at its end and for what is no plain name.
Function ${UN}NextName
  ; As long as what is looked for: of a shorter text nothing is cut off.
  StrCpy $R2 "......."
  ${DoUntil} $R2 S== " FILE='"
    ClearErrors
    FileReadByte $R0 $R1
    ${If} ${Errors}
      StrCpy $R1 ""
      Return
    ${EndIf}
    IntFmt $R1 "%c" $R1
    StrCpy $R2 "$R2$R1" "" -7
  ${Loop}
  StrCpy $R1 ""
  ${Do}
    ClearErrors
    FileReadByte $R0 $R2
    IntFmt $R2 "%c" $R2
    ${If} ${Errors}
    ${OrIf} $R2 == "\"
    ${OrIf} $R2 == "/"
    ${OrIf} $R2 == ":"
    ${OrIf} $R2 == "*"
    ${OrIf} $R2 == "?"
      StrCpy $R1 ""
      Return
    ${EndIf}
    ${If} $R2 == "'"
      Return
    ${EndIf}
    StrCpy $R1 "$R1$R2"
  ${Loop}
FunctionEnd

; Removes what an update has staged and not installed. The pending manifest names what is not of this version.
Function ${UN}DropStaged
  FileOpen $R0 "$INSTDIR\Updates\updates.xml" r
  ${If} $R0 != ""
    ${Do}
      Call ${UN}NextName
      ${If} $R1 == ""
        ${ExitDo}
      ${EndIf}
      Delete "$INSTDIR\Updates\$R1"
    ${Loop}
    FileClose $R0
  ${EndIf}
  Delete "$INSTDIR\Updates\updates.xml"
  Delete "$INSTDIR\Updates\updates.xml.tmp~"
  !insertmacro ForEachFile DropStagedFile
  !insertmacro ForEachCompanion DropJournal "installing.xml"
FunctionEnd

!macroend

!macro DropStagedFile FILE
  Delete "$INSTDIR\Updates\${FILE}"
  Delete "$INSTDIR\Updates\${FILE}.tmp~"
!macroend
!macro DropJournal NAME
  Delete "$INSTDIR\Updates\Backup\${NAME}"
!macroend

; Deletes in the folder $R0 what is named by decimal digits, $0 of them or "any" number, between $R1 and $R2.
Function un.DeleteNumbered
  StrLen $R3 $R1
  StrLen $R4 $R2
  FindFirst $R5 $R6 "$R0\$R1*$R2"
  ${DoWhile} $R6 != ""
    ; The system matches short names too, so what is found is looked at again.
    StrLen $R7 $R6
    IntOp $R7 $R7 - $R3
    IntOp $R7 $R7 - $R4
    StrCpy $R8 $R6 $R7 $R3
    ${StrFilter} "$R8" "1" "" "" $R9
    ${If} $R7 == $0
    ${OrIf} $0 == "any"
    ${AndIf} $R7 > 0
      ${If} "$R1$R9$R2" == $R6
        Delete "$R0\$R6"
      ${EndIf}
    ${EndIf}
    FindNext $R5 $R6
  ${Loop}
  FindClose $R5
FunctionEnd

; Removes in the uninstaller what the updater has saved, and what updates have installed that this version has not.
Function un.DropBackups
  FindFirst $1 $2 "$INSTDIR\Updates\Backup\*.*"
  ${DoWhile} $2 != ""
    ${StrFilter} "$2" "1" "" "" $R9
    ${If} $R9 == $2
      StrCpy $3 "$INSTDIR\Updates\Backup\$2"
      Call un.DropBackup
    ${EndIf}
    FindNext $1 $2
  ${Loop}
  FindClose $1
  RMDir "$INSTDIR\Updates\Backup"
FunctionEnd

!macro DropSavedFile FILE
  StrCpy $5 "${FILE}"
  Call un.DropSaved
!macroend

; The same of the folder $3 of one update.
Function un.DropBackup
  FileOpen $4 "$3\updates.xml" r
  ${If} $4 != ""
    ${Do}
      StrCpy $R0 $4
      Call un.NextName
      ${If} $R1 == ""
        ${ExitDo}
      ${EndIf}
      StrCpy $5 $R1
      Delete "$INSTDIR\$5"
      Call un.DropSaved
    ${Loop}
    FileClose $4
  ${EndIf}
  !insertmacro ForEachFile DropSavedFile
  Delete "$3\updates.xml"
  Delete "$3\updates.xml.tmp~"
  RMDir "$3"
FunctionEnd

; What there is of the file $5 in the folder $3.
Function un.DropSaved
  Delete "$3\$5"
  Delete "$3\$5.new~"
  StrCpy $R0 $3
  StrCpy $0 "any"
  StrCpy $R1 "$5.used"
  StrCpy $R2 "~"
  Call un.DeleteNumbered
FunctionEnd

; Does what ForEachDataFile asks for in the uninstaller.
!macro DeleteDataFile FOLDER BEFORE DIGITS BEHIND
  StrCpy $R0 "$INSTDIR${FOLDER}"
  !if "${BEHIND}" == ""
    !insertmacro ForEachCompanion DeleteNamed "${BEFORE}"
  !else
    StrCpy $0 "${DIGITS}"
    StrCpy $R1 "${BEFORE}"
    !insertmacro ForEachCompanion DeleteNumberedNamed "${BEHIND}"
  !endif
!macroend
!macro DeleteNamed NAME
  Delete "$R0\${NAME}"
!macroend
!macro DeleteNumberedNamed NAME
  StrCpy $R2 "${NAME}"
  Call un.DeleteNumbered
!macroend

; Whether the program may be installed into $INSTDIR, in $0: "1" for a folder that is not there or empty, holds an
; installation or the program as it was unpacked, or nothing but what an uninstallation or a broken-off installation leaves.
Function IsForUs
  StrCpy $0 "1"
  ${IfNot} ${FileExists} "$INSTDIR"
    Return
  ${EndIf}
  ${If} ${FileExists} "$INSTDIR\*.*"
    ReadRegStr $1 HKCU "${UNINSTALL}" "InstallLocation"
    ${If} $1 == $INSTDIR
    ${AndIf} ${FileExists} "$INSTDIR\Uninstall.exe"
      Return
    ${EndIf}
    ${If} ${FileExists} "$INSTDIR\${PRODUCT}.exe"
    ${AndIf} ${FileExists} "$INSTDIR\tbUpdater.exe"
      Return
    ${EndIf}
    FindFirst $1 $2 "$INSTDIR\*.*"
    ${DoWhile} $2 != ""
      ${If} $2 != "."
      ${AndIf} $2 != ".."
        Call IsOurName
      ${EndIf}
      FindNext $1 $2
    ${Loop}
    FindClose $1
  ${Else}
    StrCpy $0 "0"
  ${EndIf}
FunctionEnd

!macro AcceptFile FILE
  !insertmacro AcceptName "${FILE}"
  !insertmacro AcceptName "${FILE}.old~"
!macroend
!macro AcceptName NAME
  ${If} $2 == "${NAME}"
    StrCpy $3 "1"
  ${EndIf}
!macroend

; $0 becomes "0" when $2 is none of the names that we leave in the folder.
Function IsOurName
  StrCpy $3 "0"
  !insertmacro AcceptName "Data"
  !insertmacro AcceptName "Log"
  !insertmacro AcceptName "Uninstall.exe"
  !insertmacro ForEachCompanion AcceptName "${PRODUCT}.ini"
  !insertmacro ForEachCompanion AcceptName "TB.BIN"
  !insertmacro ForEachFile AcceptFile
  ${If} $3 == "0"
    StrCpy $0 "0"
  ${EndIf}
FunctionEnd
