; What an older version, or a width that isn't wanted any longer, has left behind the new files.

Var Kept  ; the width that had to stay

; $R0 is 1 where a name is in the new list.
Function IsListed
  Pop $0
  StrCpy $R0 0
  FileOpen $1 "$INSTDIR\${WORK}\${LIST}" r
  ${Do}
    ClearErrors
    FileRead $1 $2
    ${If} ${Errors}
      ${ExitDo}
    ${EndIf}
    ${If} $2 == "$0$\r$\n"
      StrCpy $R0 1
      ${ExitDo}
    ${EndIf}
  ${Loop}
  FileClose $1
  ClearErrors
FunctionEnd

; A file that is no longer shipped goes; what has to stay stays in the list.
Function DropForgotten
  Pop $6
  Push $6
  Call IsListed
  ${If} $R0 == 1
    Return
  ${EndIf}
  StrCpy $Left 0
  StrCpy $0 $6 5
  ${If} $0 == $Kept
    StrCpy $Left 1
  ${Else}
    Push $6
    Call DropListed
    ${If} $Left == 1
      StrCpy $Incomplete 1
    ${EndIf}
  ${EndIf}
  ${If} $Left == 1
    FileOpen $List "$INSTDIR\${WORK}\${LIST}" a
    FileSeek $List 0 END
    FileWrite $List "$6$\r$\n"
    FileClose $List
  ${EndIf}
FunctionEnd

; A width that isn't wanted any longer goes. Both share some of their entries, so what stays enters itself again.
Function DropOtherWidth
  StrCpy $Kept ""
  StrCpy $8 win32
  ${If} $Width == 32
    StrCpy $8 win64
  ${EndIf}
  ${If} $Width == both
  ${OrIfNot} ${FileExists} "$INSTDIR\$8\QVEsprit.dll"
    Return
  ${EndIf}
  ${Log} "The add-in for hosts of the other width, $INSTDIR\$8, goes: /Width=$Width was chosen. With /Width=both it comes back."
  StrCpy $Failed 0
  !insertmacro once TakeOut $8
  ${If} $Failed != 0
    StrCpy $Kept $8
    ${Note} "$INSTDIR\$8\QVEsprit.dll can't be taken out of the registry, and stays."
  ${EndIf}
  StrCpy $Failed 0
  !insertmacro for_chosen once EnterAgain
  ${If} $Failed != 0
    ${Note} "$INSTDIR\win$Width\QVEsprit.dll can't enter itself into the registry again."
  ${EndIf}
FunctionEnd

Function DropOld
  Call DropOtherWidth
  !insertmacro each_listed "" DropForgotten "${LIST}"
  !insertmacro copy "$INSTDIR\${WORK}\${LIST}" "$INSTDIR\${LIST}"
FunctionEnd
