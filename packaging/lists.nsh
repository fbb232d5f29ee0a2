; What setup has put there, by name: the list lies in the folder, so that a later version, or removal, finds what it doesn't
; know itself, and nothing that somebody made is taken. New files are brought in below WORK, with their own list; old
; programs wait there until the new ones are in place. UN is empty or "un.".

!define LIST "QVEsprit-files.txt"
!define WORK "QVEsprit-setup"

Var Left  ; 1: something couldn't be deleted

; Calls a function for each name of a list; it leaves $R1 and $R2 alone.
!macro each_listed UN FUNCTION LIST
  Push "${LIST}"
  GetFunctionAddress $0 ${UN}${FUNCTION}
  Push $0
  Call ${UN}EachListed
!macroend

!macro list_functions UN
Function ${UN}EachListed
  Pop $R1
  Pop $0
  FileOpen $R2 "$INSTDIR\$0" r
  ${If} $R2 != ""
    ${Do}
      ClearErrors
      FileRead $R2 $0
      ${If} ${Errors}
        ${ExitDo}
      ${EndIf}
      ${TrimNewLines} "$0" $0
      ${If} $0 != ""
        Push $0
        Call $R1
      ${EndIf}
    ${Loop}
    FileClose $R2
  ${EndIf}
  ClearErrors
FunctionEnd

; $R0 is "program", "document" or "text".
Function ${UN}KindOf
  Pop $0
  StrCpy $R0 text
  StrCpy $1 $0 "" -4
  StrCpy $2 $0 5
  ${If} $1 == ".dll"
  ${OrIf} $1 == ".exe"
    StrCpy $R0 program
  ${ElseIf} $2 == "docs\"
    StrCpy $R0 document
  ${EndIf}
FunctionEnd

Function ${UN}CheckListedFree
  Pop $3
  !insertmacro call "${UN}" KindOf $3
  ${If} $R0 == program
    !insertmacro call "${UN}" CheckFree $3
  ${EndIf}
FunctionEnd

; Deletes a file, and the folders above it that have become empty.
Function ${UN}Drop
  Pop $0
  Delete "$INSTDIR\$0"
  ${If} ${FileExists} "$INSTDIR\$0"
    StrCpy $Left 1
    !insertmacro log "${UN}" "$INSTDIR\$0 can't be deleted."
  ${EndIf}
  ${Do}
    ${GetParent} "$0" $0
    ${If} $0 == ""
      ${ExitDo}
    ${EndIf}
    RMDir "$INSTDIR\$0"
  ${LoopUntil} ${FileExists} "$INSTDIR\$0\*.*"
  ClearErrors
FunctionEnd

; A text goes unless somebody has edited it, and with it the new one beside it.
Function ${UN}DropListed
  Pop $6
  !insertmacro call "${UN}" KindOf $6
  ${If} $R0 == text
    Push "$INSTDIR\$6.new"
    !insertmacro call "${UN}" AreSame "$INSTDIR\original\$6"
    ${If} $R0 == 1
      !insertmacro call "${UN}" Drop "$6.new"
    ${EndIf}
    Push "$INSTDIR\$6"
    !insertmacro call "${UN}" AreSame "$INSTDIR\original\$6"
    ${If} $R0 != 1
    ${AndIf} $TakeEdited != 1
    ${AndIf} ${FileExists} "$INSTDIR\$6"
      !insertmacro log "${UN}" "$INSTDIR\$6 was edited and stays."
    ${Else}
      !insertmacro call "${UN}" Drop "$6"
    ${EndIf}
    !insertmacro call "${UN}" Drop "original\$6"
  ${Else}
    !insertmacro call "${UN}" Drop "$6"
  ${EndIf}
FunctionEnd

; What setup has brought in, and the old programs that were put aside: at installation only where there is one in the place.
Function ${UN}DropWorkFile
  Pop $6
  !insertmacro call "${UN}" Drop "${WORK}\incoming\$6"
  !if "${UN}" == ""
    ${If} ${FileExists} "$INSTDIR\${WORK}\outgoing\$6"
    ${AndIfNot} ${FileExists} "$INSTDIR\$6"
      Return
    ${EndIf}
  !endif
  !insertmacro call "${UN}" Drop "${WORK}\outgoing\$6"
FunctionEnd
Function ${UN}DropWork
  SetOutPath $TEMP  ; a current folder couldn't go
  !insertmacro each_listed "${UN}" DropWorkFile "${WORK}\${LIST}"
  ${IfNot} ${FileExists} "$INSTDIR\${WORK}\outgoing\*.*"
    !insertmacro call "${UN}" Drop "${WORK}\${LIST}"
  ${EndIf}
  RMDir "$INSTDIR"
FunctionEnd
!macroend

!insertmacro list_functions ""
!insertmacro list_functions "un."
