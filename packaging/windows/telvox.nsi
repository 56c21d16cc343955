; The installer: for one user, without administrator rights. Needs -DVERSION, -DFILES (folder of what is installed),
; -DSIZE (in KB), -DICON, -DINSTALLED (a script that deletes what was installed) and -DTARGET (the file to make).
Target amd64-unicode
ManifestDPIAware true
SetCompressor /SOLID lzma
!include MUI2.nsh
!include LogicLib.nsh

!define PRODUCT "Telvox-A Konfiguration"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\telvox"
!define CLASSES "Software\Classes"

Name "${PRODUCT}"
OutFile "${TARGET}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\telvox"
InstallDirRegKey HKCU "${UNINSTALL}" "InstallLocation"
BrandingText "${PRODUCT} ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=1031 "ProductName" "${PRODUCT}"
VIAddVersionKey /LANG=1031 "FileDescription" "${PRODUCT}, Installation"
VIAddVersionKey /LANG=1031 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=1031 "CompanyName" "Telvox-Projekt"
VIAddVersionKey /LANG=1031 "LegalCopyright" "© 2026 Telvox-Projekt"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\telvox.exe"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "German"

; A program that runs cannot be replaced: nothing is touched before both have been closed.
!macro CLOSED PROGRAM
    ${Do}
        ClearErrors
        ${IfNot} ${FileExists} "$INSTDIR\${PROGRAM}"
            ${ExitDo}
        ${EndIf}
        FileOpen $0 "$INSTDIR\${PROGRAM}" a
        ${IfNot} ${Errors}
            FileClose $0
            ${ExitDo}
        ${EndIf}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION \
            "${PRODUCT} läuft noch (${PROGRAM}). Bitte schließen Sie das Programm und wiederholen Sie dann." \
            /SD IDCANCEL IDRETRY +3
        SetErrorLevel 3
        Quit
    ${Loop}
!macroend

Section
    !insertmacro CLOSED telvox.exe
    !insertmacro CLOSED telvox-cli.exe
    SetOutPath "$INSTDIR"
    RMDir /r "$INSTDIR\hilfe"
    RMDir /r "$INSTDIR\lizenzen"
    File /r "${FILES}/*"
    WriteUninstaller "$INSTDIR\deinstallieren.exe"

    CreateDirectory "$SMPROGRAMS\${PRODUCT}"
    CreateShortCut "$SMPROGRAMS\${PRODUCT}\${PRODUCT}.lnk" "$INSTDIR\telvox.exe"
    CreateShortCut "$SMPROGRAMS\${PRODUCT}\${PRODUCT} mit simulierten Geräten.lnk" "$INSTDIR\telvox.exe" "--simulator"

    WriteRegStr HKCU "${CLASSES}\.telvox" "" "telvox.profil"
    WriteRegStr HKCU "${CLASSES}\telvox.profil" "" "Telvox-A Profil"
    WriteRegStr HKCU "${CLASSES}\telvox.profil\DefaultIcon" "" "$INSTDIR\telvox.exe,0"
    WriteRegStr HKCU "${CLASSES}\telvox.profil\shell\open\command" "" '"$INSTDIR\telvox.exe" --profil "%1"'

    WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "${PRODUCT}"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\telvox.exe,0"
    WriteRegStr HKCU "${UNINSTALL}" "Publisher" "Telvox-Projekt"
    WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\deinstallieren.exe"'
    WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\deinstallieren.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL}" "EstimatedSize" ${SIZE}
    WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)' ; what opens which file has changed
SectionEnd

; Only what was installed goes: what the user put into the folder, or saved elsewhere, is theirs.
Section "Uninstall"
    !insertmacro CLOSED telvox.exe
    !insertmacro CLOSED telvox-cli.exe
    !include "${INSTALLED}"
    RMDir /r "$INSTDIR\hilfe"
    RMDir /r "$INSTDIR\lizenzen"
    Delete "$INSTDIR\deinstallieren.exe"
    RMDir "$INSTDIR"
    RMDir "$LOCALAPPDATA\Programs" ; where nothing else is in it
    RMDir /r "$SMPROGRAMS\${PRODUCT}"
    ReadRegStr $0 HKCU "${CLASSES}\.telvox" ""
    ${If} $0 == "telvox.profil"
        DeleteRegKey HKCU "${CLASSES}\.telvox"
    ${EndIf}
    DeleteRegKey HKCU "${CLASSES}\telvox.profil"
    DeleteRegKey HKCU "${UNINSTALL}"
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
SectionEnd
