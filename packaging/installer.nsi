; The installer for Windows: both widths of the add-in, for all users or for one. tools/make_packages.py compiles it, and
; gives VERSION, PUBLISHER, ICON, OUT, FILES (the lists of what is packed), SIZE in KB, SIGN (a command that signs and verifies
; "%1", maybe empty). How it is used, its options and the numbers that it ends with are in docs/install.md.
;
; A function's arguments come on the stack; $R0 holds what it gives. $0 to $9 are a function's own.
Unicode true
Target amd64-unicode
ManifestDPIAware true
SetCompressor /SOLID lzma
Name "QVEsprit ${VERSION}"
OutFile "${OUT}"
InstallDir ""
RequestExecutionLevel highest
BrandingText "${PUBLISHER} ${VERSION}"
ShowInstDetails show
VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey CompanyName "${PUBLISHER}"
VIAddVersionKey FileDescription "Setup of QVEsprit"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductName "QVEsprit"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey LegalCopyright ""
!if `${SIGN}` != ""
  !uninstfinalize `${SIGN}` = 0
!endif

!include LogicLib.nsh
!include WinMessages.nsh
!include FileFunc.nsh
!include TextFunc.nsh
!include nsDialogs.nsh
!include MUI2.nsh
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"

!define ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\QVEsprit"
!define SETTINGS "Software\D.P.Technology\Esprit\QVEsprit"

; What an installation or removal ends with; behind the last one the add-in is installed, but not all of it.
!define WRONG_OPTION 3
!define NO_RIGHTS 4
!define IN_USE 5
!define NOT_WRITTEN 6
!define NOT_REGISTERED 7
!define INCOMPLETE 8

Var AllUsers  ; 1 or 0
Var Width     ; 64, 32, both; empty until it is known
Var Host      ; the host's program, which tells the width
Var Folder    ; what /D= said
Var LogFile
Var InstallPath
Var ExportPath
Var UserModelsPath
Var MakeListPath
Var KnowledgeBase

; The variables of the environment with the Var that holds each, for a macro.
!macro each_variable DO
  !insertmacro ${DO} QVEspritInstallPath $InstallPath
  !insertmacro ${DO} QVEspritExportPath $ExportPath
  !insertmacro ${DO} QVEspritUserModelsPath $UserModelsPath
  !insertmacro ${DO} QVMakeListPath $MakeListPath
  !insertmacro ${DO} DESKHOST_KB $KnowledgeBase
!macroend

!include "${FILES}"
!include common.nsh
!include lists.nsh
!include options.nsh
!include environment.nsh
!include dialogs.nsh
!include install.nsh
!include upgrade.nsh
!include entry.nsh
!include remove.nsh

!insertmacro MUI_LANGUAGE English

Section "QVEsprit"
  AddSize ${SIZE}
  SetDetailsPrint none  ; the log's lines are what is to be seen
  Call Install
SectionEnd

Section "un.QVEsprit"
  SetDetailsPrint none
  Call un.Remove
SectionEnd
