LRESULT CALLBACK WndProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    LRESULT _vlResult = 0;
    if (VL_VlwinMessage(hwnd, msg, wParam, lParam, &_vlResult)) return _vlResult;
    if (VL_WindowMessage(hwnd, msg, wParam, lParam, &_vlResult)) return _vlResult;
    switch (msg) {
    case WM_COMMAND: {
        WORD notifyCode = HIWORD(wParam);
        WORD ctrlId = LOWORD(wParam);
        (void)notifyCode;
        if (GetPropW(hwnd, L"VL_Creating")) break;
        switch(ctrlId) {
        case IDC_CTRL_0:
            if (notifyCode == BN_CLICKED) On__u6309_u94ae1_Click();
            break;
        case IDC_CTRL_2:
            if (notifyCode == BN_CLICKED || notifyCode == 0x021A) On__u590d_u9009_u68461_ValueChange();
            break;
        case 0: (void)ctrlId; break;
        default: break;
        }
        break;
    }
    case WM_NOTIFY: {
        NMHDR* nmhdr = (NMHDR*)lParam;
        if (!nmhdr || GetPropW(hwnd, L"VL_Creating")) break;
        if (nmhdr->code == NM_CUSTOMDRAW) {
            LRESULT _vlDrawn = VL_VlwinListViewNmCustomDraw(lParam);
            if (_vlDrawn) return _vlDrawn;
        }
        switch(nmhdr->idFrom) {
        case 0: (void)nmhdr; break;
        }
        break;
    }
    case WM_CLOSE:
        if (!On_MainWindow_CloseQuery()) return 0;
        break;
    case WM_DESTROY:
        On_MainWindow_Close();
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcW(hwnd, msg, wParam, lParam);
}

void CreateControls(HWND hwnd) {
    HFONT hFont = CreateFontW(-14, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Microsoft YaHei UI");
    hFont = VL_OwnFont(hwnd, hFont);
    SetPropW(hwnd, L"VL_Creating", (HANDLE)1);
    VL_D2DStdControls_Register();
    hwnd_u6309_u94ae1 = CreateWindowW(L"VL_D2DPushButton", L"确定", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS, VL_ScaleX(hwnd, 20), VL_ScaleY(hwnd, 60), VL_ScaleX(hwnd, 100), VL_ScaleY(hwnd, 32), hwnd, (HMENU)IDC_CTRL_0, g_hInstance, NULL);
    SendMessageW(hwnd_u6309_u94ae1, WM_SETFONT, (WPARAM)hFont, TRUE);
    VL_VlwinButton_SetOptions(hwnd_u6309_u94ae1, 4, 0, L"");
    hwnd_u6587_u672c_u68461 = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | ES_AUTOHSCROLL, VL_ScaleX(hwnd, 20), VL_ScaleY(hwnd, 100), VL_ScaleX(hwnd, 160), VL_ScaleY(hwnd, 28), hwnd, (HMENU)IDC_CTRL_1, g_hInstance, NULL);
    SendMessageW(hwnd_u6587_u672c_u68461, WM_SETFONT, (WPARAM)hFont, TRUE);
    VL_PrepareEdit(hwnd_u6587_u672c_u68461);
    VL_VlwinPrepareEdit(hwnd_u6587_u672c_u68461, 3, L"");
    SendMessageW(hwnd_u6587_u672c_u68461, EM_SETLIMITTEXT, 0x7FFFFFFE, 0);
    VL_Edit_SetCueBanner(hwnd_u6587_u672c_u68461, L"查找", false);
    VL_SetTextColor(hwnd_u6587_u672c_u68461, (int)RGB(204, 204, 204));
    hwnd_u590d_u9009_u68461 = CreateWindowW(L"BUTTON", L"记住", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | BS_OWNERDRAW, VL_ScaleX(hwnd, 20), VL_ScaleY(hwnd, 140), VL_ScaleX(hwnd, 120), VL_ScaleY(hwnd, 22), hwnd, (HMENU)IDC_CTRL_2, g_hInstance, NULL);
    SendMessageW(hwnd_u590d_u9009_u68461, WM_SETFONT, (WPARAM)hFont, TRUE);
    SetPropW(hwnd_u590d_u9009_u68461, L"VL_VlwinOdKind", (HANDLE)(intptr_t)(VL_VLWIN_OD_CHECKBOX));
    VL_Win32StripCheckRadioTheme(hwnd_u590d_u9009_u68461);
    VL_VlwinAttachOdSubclass(hwnd_u590d_u9009_u68461);
    SendMessageW(hwnd_u590d_u9009_u68461, BM_SETCHECK, BST_CHECKED, 0);
    VL_SetTextColor(hwnd_u590d_u9009_u68461, (int)RGB(204, 204, 204));
    hwnd_u8868_u683c1 = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | LVS_SHOWSELALWAYS | LVS_REPORT | LVS_SINGLESEL, VL_ScaleX(hwnd, 150), VL_ScaleY(hwnd, 140), VL_ScaleX(hwnd, 150), VL_ScaleY(hwnd, 80), hwnd, (HMENU)IDC_CTRL_3, g_hInstance, NULL);
    SendMessageW(hwnd_u8868_u683c1, WM_SETFONT, (WPARAM)hFont, TRUE);
    ListView_SetExtendedListViewStyle(hwnd_u8868_u683c1, LVS_EX_DOUBLEBUFFER | LVS_EX_FULLROWSELECT);
    VL_PrepareListView(hwnd_u8868_u683c1, 32, 32);
    VL_VlwinPrepareTable(hwnd_u8868_u683c1, true, 50, L"", -1, -1);
    VL_ListView_AddColumn(hwnd_u8868_u683c1, L"列", 60);
    VL_SetTextColor(hwnd_u8868_u683c1, (int)RGB(204, 204, 204));
    RemovePropW(hwnd, L"VL_Creating");
}

int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE, LPWSTR, int nCmdShow) {
    g_vlwinSelfDrawActive = true;
    g_vlwinTitleBarColor = RGB(16, 32, 48);
    g_vlwinClientBgColor = RGB(45, 45, 48);
    g_vlwinWndTitle = L"夜色";
    RECT rc = {0, 0, VL_ScaleX(NULL, 320), VL_ScaleY(NULL, 240)};
    AdjustWindowRectEx(&rc, WS_POPUP | WS_CLIPCHILDREN, FALSE, 0);
    int adjustedWidth = rc.right - rc.left;
    int adjustedHeight = rc.bottom - rc.top;
    g_hWndMain = CreateWindowW(L"VLWnd", L"夜色", WS_POPUP | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT, adjustedWidth, adjustedHeight, NULL, NULL, g_hInstance, NULL);
    VL_SetWindowBorderless(g_hWndMain, true, true);
    VL_VlwinPrepareWindow(g_hWndMain, (int)RGB(16, 32, 48), (int)RGB(45, 45, 48), true, false, true);
    VL_VlwinDisableNcRendering(g_hWndMain);
    VL_CenterWindow(g_hWndMain);
    CreateControls(g_hWndMain);
    VL_ApplyDesignContextMenuBinds_Main(g_hWndMain);
    VL_Window_Register(L"主窗口", g_hWndMain, NULL, false);
    On_MainWindow_Create();  // main create
    ShowWindow(g_hWndMain, nCmdShow); UpdateWindow(g_hWndMain);
}

void On__u6309_u94ae1_Click() {
    VL_ListView_AddRow(hwnd_u8868_u683c1, {std::wstring(VL_GetText(hwnd_u6587_u672c_u68461))}); // VL_LINE:2
}

void On__u590d_u9009_u68461_ValueChange() {
    VL_Print(VL_ToOutputStr(VL_IsChecked(hwnd_u590d_u9009_u68461))); // VL_LINE:4
}

void VL_CallWindowCreateEvent(const std::wstring& name) {
    if (name == std::wstring(L"主窗口")) On_MainWindow_Create();
}
