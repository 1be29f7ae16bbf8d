; The suite's installer for Windows, built on Linux with makensis:
;   makensis -DSUITE=<folder with plAssist.exe, Paperlark.exe, *.plp, *.lan>
;            -DPOLICIES=<data/windows/policies> -DOUTFILE=<plsetup.exe> -DVERSION=4.12.0 plsetup.nsi
; Per machine, into "Program Files\Paperlark_XP". Silent: plsetup.exe /S [/GS=<gswin64c.exe>]
; [/D=<folder>]; uninstall.exe /S.
;
; Everything is written elevated into the real machine locations (64-bit registry view, Program
; Files). The assistant deletes each user's VirtualStore copies of the machine key and of
; "Program Files\Paperlark_XP" at start, so that what is written here is what every user sees.

Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel admin
ManifestSupportedOS all

!ifndef VERSION
  !define VERSION "4.12.0"
!endif
!ifndef OUTFILE
  !define OUTFILE "plsetup.exe"
!endif
!define KEY "Software\tobrin\PaperlarkXP"
!define RUNKEY "Software\Microsoft\Windows\CurrentVersion\Run"
!define UNINSTKEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Paperlark_XP"
!define ENDMARKER "plassistende.cmd"

!include "LogicLib.nsh"
!include "FileFunc.nsh"
!include "x64.nsh"
!include "MUI2.nsh"

Name "Paperlark ${VERSION}"
OutFile "${OUTFILE}"
InstallDir "$PROGRAMFILES64\Paperlark_XP"
InstallDirRegKey HKLM "${UNINSTKEY}" "InstallLocation"
BrandingText "Paperlark ${VERSION}"

Var Spool       ; the machine spool folder, ending in "\"
Var Ghostscript ; the Ghostscript console program chosen, or empty

!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"

LangString UseGhostscript ${LANG_ENGLISH} "Ghostscript was found:$\r$\n$0$\r$\n$\r$\nShall Paperlark use it?"
LangString UseGhostscript ${LANG_GERMAN} "Ghostscript wurde gefunden:$\r$\n$0$\r$\n$\r$\nSoll Paperlark es verwenden?"
LangString NoGhostscript ${LANG_ENGLISH} "No Ghostscript was found. Paperlark needs it to make PDF files.$\r$\n$\r$\nInstall the 64-bit Ghostscript for Windows from https://ghostscript.com/releases/ (GNU AGPL; your Ghostscript vendor may offer a commercial licence). Paperlark finds it by itself; another copy can be named in the registry value gswin32c of HKLM\${KEY}."
LangString NoGhostscript ${LANG_GERMAN} "Es wurde kein Ghostscript gefunden. Paperlark braucht es, um PDF-Dateien zu erzeugen.$\r$\n$\r$\nInstallieren Sie das 64-Bit-Ghostscript für Windows von https://ghostscript.com/releases/ (GNU AGPL; Ihr Ghostscript-Anbieter bietet gegebenenfalls eine kommerzielle Lizenz). Paperlark findet es von selbst; ein anderes kann im Registrierungswert gswin32c von HKLM\${KEY} genannt werden."
LangString StillRunning ${LANG_ENGLISH} "A Paperlark assistant is still running. Close it and try again."
LangString StillRunning ${LANG_GERMAN} "Ein Paperlark Assistent läuft noch. Bitte beenden Sie ihn und versuchen Sie es erneut."

; --- Ghostscript ------------------------------------------------------------------------------------

; The console program of the newest Ghostscript registered under HKLM\SOFTWARE\<$R0>, in $R1 (kept
; when nothing newer is found). Ghostscript registers each version as a sub-key holding GS_DLL.
!macro FindRegisteredGhostscript UN
Function ${UN}FindRegisteredGhostscript
  Push $R2
  Push $R3
  Push $R4
  StrCpy $R2 0
  ${Do}
    EnumRegKey $R3 HKLM "SOFTWARE\$R0" $R2
    ${If} $R3 == ""
      ${Break}
    ${EndIf}
    IntOp $R2 $R2 + 1
    ReadRegStr $R4 HKLM "SOFTWARE\$R0\$R3" "GS_DLL"
    ${If} $R4 != ""
      ${GetParent} $R4 $R4
      ${If} ${FileExists} "$R4\gswin64c.exe"
        StrCpy $R1 "$R4\gswin64c.exe"
      ${ElseIf} ${FileExists} "$R4\gswin32c.exe"
        StrCpy $R1 "$R4\gswin32c.exe"
      ${EndIf}
    ${EndIf}
  ${Loop}
  Pop $R4
  Pop $R3
  Pop $R2
FunctionEnd
!macroend
!insertmacro FindRegisteredGhostscript ""

; $Ghostscript: the /GS= switch, else what a previous installation chose, else an installed one
; that the administrator agrees to (silent installs agree).
Function ChooseGhostscript
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/GS=" $1
  ${IfNot} ${Errors}
    StrCpy $Ghostscript $1
    Return
  ${EndIf}
  ReadRegStr $Ghostscript HKLM "${KEY}" "gswin32c"
  ${If} $Ghostscript != ""
    Return
  ${EndIf}
  StrCpy $R1 ""
  ; Versions are enumerated in name order, so the last one found is the newest.
  StrCpy $R0 "GPL Ghostscript"
  Call FindRegisteredGhostscript
  StrCpy $R0 "Artifex Ghostscript"
  Call FindRegisteredGhostscript
  ${If} $R1 == ""
    SearchPath $R1 "gswin64c.exe"
  ${EndIf}
  ${If} $R1 == ""
    DetailPrint "$(NoGhostscript)"
    MessageBox MB_OK|MB_ICONINFORMATION "$(NoGhostscript)" /SD IDOK
    Return
  ${EndIf}
  StrCpy $0 $R1
  MessageBox MB_YESNO|MB_ICONQUESTION "$(UseGhostscript)" /SD IDYES IDNO +2
  StrCpy $Ghostscript $R1
FunctionEnd

; --- running assistants -----------------------------------------------------------------------------

; Every running assistant ends when the end marker appears in the machine spool folder (each looks
; once a second). A running program's file cannot be opened for writing, so the marker stays for at
; least three seconds and until plAssist.exe can be opened, at most 20 seconds; then it is removed,
; or no assistant would start again.
!macro StopAssistants UN
Function ${UN}StopAssistants
  ReadRegStr $0 HKLM "${KEY}" "psdir"
  ${If} $0 == ""
  ${OrIfNot} ${FileExists} "$0*.*"
  ${OrIfNot} ${FileExists} "$INSTDIR\plAssist.exe"
    Return
  ${EndIf}
  FileOpen $1 "$0${ENDMARKER}" w
  FileClose $1
  StrCpy $2 0
  ${Do}
    Sleep 500
    IntOp $2 $2 + 1
    ClearErrors
    FileOpen $1 "$INSTDIR\plAssist.exe" a
    ${IfNot} ${Errors}
      FileClose $1
      ${IfThen} $2 >= 6 ${|} ${Break} ${|}
    ${EndIf}
  ${LoopUntil} $2 >= 40
  Delete "$0${ENDMARKER}"
FunctionEnd
!macroend
!insertmacro StopAssistants ""
!insertmacro StopAssistants "un."

; --- installing -------------------------------------------------------------------------------------

Function .onInit
  SetRegView 64
  SetShellVarContext all
  ${IfNot} ${RunningX64}
    MessageBox MB_OK|MB_ICONSTOP "Paperlark needs 64-bit Windows." /SD IDOK
    Abort
  ${EndIf}
FunctionEnd

Section "Paperlark"
  SetShellVarContext all
  Call StopAssistants

  SetOutPath "$INSTDIR"
  ClearErrors
  File "${SUITE}\plAssist.exe"
  File "${SUITE}\Paperlark.exe"
  File "${SUITE}\*.plp"
  File /nonfatal "${SUITE}\*.lan"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "$(StillRunning)" /SD IDOK
    Abort
  ${EndIf}
  ; The setup program's date tells the assistant's error report how old the installation is.
  CopyFiles /SILENT "$EXEPATH" "$INSTDIR\plsetup.exe"
  SetOutPath "$INSTDIR\policies"
  File "${POLICIES}\Paperlark.admx"
  SetOutPath "$INSTDIR\policies\en-US"
  File "${POLICIES}\en-US\Paperlark.adml"
  SetOutPath "$INSTDIR\policies\de-DE"
  File "${POLICIES}\de-DE\Paperlark.adml"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  ; The machine spool folder: a spool folder chosen by an administrator earlier is kept.
  ReadRegStr $Spool HKLM "${KEY}" "psdir"
  ${If} $Spool == ""
    StrCpy $Spool "$APPDATA\Paperlark_XP\spool\"
  ${EndIf}
  CreateDirectory "$Spool"
  ; Every user may add files and list the folder, and gets full control over the files he adds
  ; (CREATOR OWNER), but none over other users' files: the Users entry is not inherited. SYSTEM and
  ; the administrators keep full control. By well-known SIDs, so that it works in every language.
  nsExec::ExecToLog '"$SYSDIR\icacls.exe" "$Spool." /inheritance:r /grant:r *S-1-5-18:(OI)(CI)F *S-1-5-32-544:(OI)(CI)F *S-1-3-0:(OI)(CI)(IO)F *S-1-5-32-545:(RX,WD)'
  Pop $0
  DetailPrint "icacls: $0"

  Call ChooseGhostscript
  ; plDir is used as a prefix of file names and ends in "\".
  WriteRegStr HKLM "${KEY}" "plDir" "$INSTDIR\"
  WriteRegStr HKLM "${KEY}" "psdir" "$Spool"
  WriteRegStr HKLM "${KEY}" "Version" "${VERSION}"
  WriteRegStr HKLM "${KEY}" "Build" "${VERSION}"
  ${If} $Ghostscript != ""
    WriteRegStr HKLM "${KEY}" "gswin32c" "$Ghostscript"
  ${EndIf}
  ; One assistant for every user, started at logon.
  WriteRegStr HKLM "${RUNKEY}" "plAssist" '"$INSTDIR\plAssist.exe"'

  WriteRegStr HKLM "${UNINSTKEY}" "DisplayName" "Paperlark"
  WriteRegStr HKLM "${UNINSTKEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTKEY}" "Publisher" "tobrin"
  WriteRegStr HKLM "${UNINSTKEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTKEY}" "DisplayIcon" "$INSTDIR\plAssist.exe"
  WriteRegStr HKLM "${UNINSTKEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTKEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTKEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTKEY}" "NoRepair" 1
SectionEnd

; --- uninstalling -----------------------------------------------------------------------------------

Function un.onInit
  SetRegView 64
  SetShellVarContext all
FunctionEnd

; What the installer put in place goes; the users' own data (their spool folders, profiles, jobs
; still waiting in the machine spool folder, policies set by an administrator) stays.
Section "Uninstall"
  SetShellVarContext all
  Call un.StopAssistants
  DeleteRegValue HKLM "${RUNKEY}" "plAssist"

  Delete "$INSTDIR\plAssist.exe"
  Delete "$INSTDIR\Paperlark.exe"
  Delete "$INSTDIR\plsetup.exe"
  Delete "$INSTDIR\*.plp"
  Delete "$INSTDIR\*.lan"
  Delete "$INSTDIR\policies\en-US\Paperlark.adml"
  Delete "$INSTDIR\policies\de-DE\Paperlark.adml"
  Delete "$INSTDIR\policies\Paperlark.admx"
  RMDir "$INSTDIR\policies\en-US"
  RMDir "$INSTDIR\policies\de-DE"
  RMDir "$INSTDIR\policies"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"

  ; The spool folder this installer made goes when no job is left in it; one that an administrator
  ; chose stays.
  RMDir "$APPDATA\Paperlark_XP\spool"
  RMDir "$APPDATA\Paperlark_XP"
  DeleteRegValue HKLM "${KEY}" "plDir"
  DeleteRegValue HKLM "${KEY}" "psdir"
  DeleteRegValue HKLM "${KEY}" "Version"
  DeleteRegValue HKLM "${KEY}" "Build"
  DeleteRegValue HKLM "${KEY}" "gswin32c"
  DeleteRegKey /ifempty HKLM "${KEY}"
  DeleteRegKey /ifempty HKLM "Software\tobrin"
  DeleteRegKey HKLM "${UNINSTKEY}"
SectionEnd
