@echo off
setlocal EnableDelayedExpansion
chcp 65001 >nul 2>&1
set "PATH=C:/MinGW/bin;%PATH%"
if not exist "C:/MinGW/bin/g++.exe" (
    echo [FATAL ERROR] g++.exe not found at: C:/MinGW/bin/g++.exe
    exit /b 254
)
cd /d "C:/T/VL_IDE_Build"
if errorlevel 1 (
    echo [ERROR] Cannot change to build directory: C:/T/VL_IDE_Build
    exit /b 253
)
del /q *.o 2>nul
echo [WINDRES] Compiling resource file...
"C:/MinGW/bin/windres.exe" -i "C:/T/app_resource.rc" -o "C:/T/app_resource.o" 2>&1
if errorlevel 1 (
    echo [WINDRES_ERROR] Resource compilation failed
    exit /b 252
)
echo [WINDRES] Resource compiled successfully
echo [G++] Starting compilation...
"C:/MinGW/bin/g++.exe" -static -mwindows -O2 -I "C:/inc" -o "C:/T/a.exe" "C:/T/main.cpp" "C:/T/app_resource.o" -L "C:/lib" -lgdi32 -luser32 -lcomctl32 -lcomdlg32 -lole32 -loleaut32 -luuid -lws2_32 -lwininet -lwinhttp -lz -municode 2>&1
set "COMPILE_RESULT=%ERRORLEVEL%"
echo.
echo [COMPILE_EXIT_CODE] %COMPILE_RESULT%
if exist "C:/T/a.exe" (
    echo [OUTPUT_FILE] EXISTS
) else (
    echo [OUTPUT_FILE] NOT_FOUND
)
endlocal & exit /b %COMPILE_RESULT%
