; The installer: the program for all users of the machine, its entry in the start menu,
; on request its stand-ins on the PATH, and the way back. scripts/windows defines
; VERSION, TREE (the staged program), ICON, LISTS (what the tree holds) and OUTPUT.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel admin
ManifestDPIAware true

!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Vimbo"

Name "Vimbo"
OutFile "${OUTPUT}"
Icon "${ICON}"
UninstallIcon "${ICON}"
InstallDir "$PROGRAMFILES64\Vimbo"
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Vimbo"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Vimbo's installer"
VIAddVersionKey "LegalCopyright" "MIT licence"

Page license
Page components
Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles
LicenseData "${TREE}\share\doc\vimbo\LICENSE.txt"

Function .onInit
    SetRegView 64
    SetShellVarContext all
    ; Where it is already, unless the command line says otherwise.
    ${If} $INSTDIR == "$PROGRAMFILES64\Vimbo"
        ReadRegStr $0 HKLM "${UNINSTALL}" "InstallLocation"
        ${If} $0 != ""
            StrCpy $INSTDIR $0
        ${EndIf}
    ${EndIf}
FunctionEnd

Function un.onInit
    SetRegView 64
    SetShellVarContext all
FunctionEnd

Section "Vimbo"
    SectionIn RO
    SetOutPath "$INSTDIR"
    File /r "${TREE}\*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayName" "Vimbo"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL}" "Publisher" "The Vimbo developers"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayIcon" "$INSTDIR\bin\vimbo.exe"
    WriteRegStr HKLM "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL}" "NoRepair" 1
SectionEnd

Section "Entry in the start menu"
    ; Each user's own files, whoever installs it: the shell puts the name in.
    CreateShortcut /NoWorkingDir "$SMPROGRAMS\Vimbo.lnk" "$INSTDIR\bin\vimbo.exe" \
        '-s "%USERPROFILE%" -t "%USERPROFILE%"'
SectionEnd

Section /o "Stand-ins for mero and plimb on the PATH" on_the_path
    ExecWait '"$INSTDIR\lib\vimbo\path_entry.exe" add "$INSTDIR\lib\vimbo\toolchain"' $0
    ${If} $0 != 0
        DetailPrint "The PATH could not be changed."
    ${EndIf}
SectionEnd

; /PATH on the command line asks for the same.
Section
    ${GetParameters} $1
    ClearErrors
    ${GetOptions} $1 "/PATH" $2
    ${IfNot} ${Errors}
    ${AndIfNot} ${SectionIsSelected} ${on_the_path}
        ExecWait '"$INSTDIR\lib\vimbo\path_entry.exe" add "$INSTDIR\lib\vimbo\toolchain"' $0
    ${EndIf}
SectionEnd

Section "Uninstall"
    ExecWait '"$INSTDIR\lib\vimbo\path_entry.exe" remove "$INSTDIR\lib\vimbo\toolchain"'
    Delete "$SMPROGRAMS\Vimbo.lnk"
    ; What was installed and nothing else, wherever that was.
    !include "${LISTS}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    DeleteRegKey HKLM "${UNINSTALL}"
SectionEnd
