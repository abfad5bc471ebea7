@echo off
rem Makes the sample beside the programs, unless a database is there, and starts the application on it.
cd /d "%~dp0"
zelvora-db.exe sample "%~dp0."
if errorlevel 1 goto failed
start "" zelvora.exe
exit /b 0
:failed
pause
exit /b 1
