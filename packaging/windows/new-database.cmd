@echo off
rem Makes an empty database beside the programs, unless one is there, and starts the application on it.
cd /d "%~dp0"
zelvora-db.exe create "%~dp0docs.db"
if errorlevel 1 goto failed
for %%d in (blanks templates exports imports storage) do if not exist %%d mkdir %%d
start "" zelvora.exe
exit /b 0
:failed
pause
exit /b 1
