static intptr_t VL_DesignCtx_Main_0() {
    static intptr_t _vlRid = 0;
    if (_vlRid) return _vlRid;
    _vlRid = VL_ContextMenu_Create();
    if (!_vlRid) return 0;
    intptr_t r = _vlRid;
    VL_ContextMenu_AddItem((intptr_t)r, 1, L"打开", [](intptr_t _vlH,int _vlC){ (void)_vlH;(void)_vlC; On_MainWindow_Ctx__u6253_u5f00(); }, L"", 0);
    VL_ContextMenu_AddSeparator((intptr_t)r, 2);
    {
        intptr_t _vlSub = VL_ContextMenu_AddSubmenu((intptr_t)r, L"更多");
        VL_ContextMenu_AddItem((intptr_t)_vlSub, 4, L"关于", [](intptr_t _vlH,int _vlC){ (void)_vlH;(void)_vlC; On_MainWindow_Ctx__u5173_u4e8e(); }, L"", 0);
    }
    return _vlRid;
}

LRESULT CALLBACK WndProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    LRESULT _vlResult = 0;
    if (VL_WindowMessage(hwnd, msg, wParam, lParam, &_vlResult)) return _vlResult;
    switch (msg) {
    case WM_COMMAND: {
        WORD notifyCode = HIWORD(wParam);
        WORD ctrlId = LOWORD(wParam);
        (void)notifyCode;
        if (GetPropW(hwnd, L"VL_Creating")) break;
        switch(ctrlId) {
        case IDC_CTRL_1:
            if (notifyCode == BN_CLICKED) On__u9009_u9879_u53611__u6309_u94ae1_Click();
            break;
        case IDC_CTRL_4:
            if (notifyCode == CBN_SELCHANGE) {
                int _sel=VL_GetSelectedIndex(hwnd_u4e0b_u62c9_u68461);
                On__u4e0b_u62c9_u68461_SelectChange(_sel, VL_GetComboOrListItemText(hwnd_u4e0b_u62c9_u68461, _sel));
            }
            break;
        case 0: (void)ctrlId; break;
        default: break;
        }
        break;
    }
    case WM_NOTIFY: {
        NMHDR* nmhdr = (NMHDR*)lParam;
        if (!nmhdr || GetPropW(hwnd, L"VL_Creating")) break;
        switch(nmhdr->idFrom) {
        case IDC_CTRL_0:
            if (nmhdr->code == TCN_SELCHANGE) VL_Tab_OnSelChange(nmhdr->hwndFrom);
            break;
        case 0: (void)nmhdr; break;
        }
        break;
    }
    case WM_HSCROLL:
    case WM_VSCROLL: {
        HWND ctrlHwnd = (HWND)lParam;
        if (ctrlHwnd == hwnd_u6ed1_u57571) {
            UINT _vlTbCode = (UINT)LOWORD(wParam); (void)_vlTbCode;
            int pos = VL_GetValue(hwnd_u6ed1_u57571);
            if (_vlTbCode != TB_ENDTRACK && _vlTbCode != TB_THUMBPOSITION) On__u6ed1_u57571_ValueChange(pos);
            return 0;
        }
        break;
    }
    case WM_CONTEXTMENU: {
        HWND _vlTgt = (HWND)wParam;
        POINT _vlPt = {(int)(short)LOWORD(lParam), (int)(short)HIWORD(lParam)};
        if (lParam == (LPARAM)-1) GetCursorPos(&_vlPt);
        if (_vlTgt == hwnd && VL_ContextMenu_IsDesignContextAllowed((intptr_t)_vlTgt)) {
            intptr_t _vlRoot = VL_DesignCtx_Main_0();
            if (_vlRoot) {
                VL_ContextMenu_InvokeDesignPreTrackCallback((intptr_t)_vlTgt, _vlRoot);
                int _vlSel = (int)VL_ContextMenu_TrackAt((intptr_t)hwnd, _vlRoot, _vlPt.x, _vlPt.y);
                if (_vlSel) VL_ContextMenu_InvokeItemCallback(_vlRoot, (intptr_t)_vlTgt, _vlSel);
                return 0;
            }
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
    hwnd_u9009_u9879_u53611 = CreateWindowW(WC_TABCONTROLW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | TCS_TABS, VL_ScaleX(hwnd, 10), VL_ScaleY(hwnd, 10), VL_ScaleX(hwnd, 200), VL_ScaleY(hwnd, 120), hwnd, (HMENU)IDC_CTRL_0, g_hInstance, NULL);
    SendMessageW(hwnd_u9009_u9879_u53611, WM_SETFONT, (WPARAM)hFont, TRUE);
    VL_Tab_AddTab(hwnd_u9009_u9879_u53611, L"甲");
    VL_Tab_AddTab(hwnd_u9009_u9879_u53611, L"乙");
    VL_Tab_SetCurrentTab(hwnd_u9009_u9879_u53611, 1);
    if (HWND hTabPanel = VL_Tab_GetTabPanel(hwnd_u9009_u9879_u53611, 0)) {
        hwnd_u9009_u9879_u53611__u6309_u94ae1 = CreateWindowW(L"BUTTON", L"按\n\"钮\"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | BS_OWNERDRAW, VL_ScaleX(hwnd, 10), VL_ScaleY(hwnd, 15), VL_ScaleX(hwnd, 80), VL_ScaleY(hwnd, 28), hTabPanel, (HMENU)IDC_CTRL_1, g_hInstance, NULL);
        SendMessageW(hwnd_u9009_u9879_u53611__u6309_u94ae1, WM_SETFONT, (WPARAM)hFont, TRUE);
        VL_PrepareButton(hwnd_u9009_u9879_u53611__u6309_u94ae1);
        VL_SetBgColor(hwnd_u9009_u9879_u53611__u6309_u94ae1, (int)RGB(255, 0, 0));
        g_childTabInfo[hwnd_u9009_u9879_u53611__u6309_u94ae1] = std::make_pair(hwnd_u9009_u9879_u53611, 0);
    }
    hwnd_u6ed1_u57571 = CreateWindowW(TRACKBAR_CLASSW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | TBS_HORZ | TBS_AUTOTICKS | TBS_BOTH, VL_ScaleX(hwnd, 10), VL_ScaleY(hwnd, 140), VL_ScaleX(hwnd, 100), VL_ScaleY(hwnd, 30), hwnd, (HMENU)IDC_CTRL_2, g_hInstance, NULL);
    SendMessageW(hwnd_u6ed1_u57571, WM_SETFONT, (WPARAM)hFont, TRUE);
    SendMessageW(hwnd_u6ed1_u57571, TBM_SETRANGEMIN, 0, 0);
    SendMessageW(hwnd_u6ed1_u57571, TBM_SETRANGEMAX, 0, 50);
    SendMessageW(hwnd_u6ed1_u57571, TBM_SETLINESIZE, 0, 1);
    SendMessageW(hwnd_u6ed1_u57571, TBM_SETPAGESIZE, 0, 10);
    SendMessageW(hwnd_u6ed1_u57571, TBM_SETTICFREQ, 10, 0);
    VL_PrepareSlider(hwnd_u6ed1_u57571, false, false);
    SendMessageW(hwnd_u6ed1_u57571, TBM_SETPOS, TRUE, 50);
    hwnd_u6587_u672c_u68461 = CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | ES_AUTOHSCROLL | ES_PASSWORD, VL_ScaleX(hwnd, 15), VL_ScaleY(hwnd, 165), VL_ScaleX(hwnd, 90), VL_ScaleY(hwnd, 26), hwnd, (HMENU)IDC_CTRL_3, g_hInstance, NULL);
    SendMessageW(hwnd_u6587_u672c_u68461, WM_SETFONT, (WPARAM)hFont, TRUE);
    VL_PrepareEdit(hwnd_u6587_u672c_u68461);
    VL_PrepareSingleLineEdit(hwnd_u6587_u672c_u68461, VL_VERTICAL_CENTER);
    SendMessageW(hwnd_u6587_u672c_u68461, EM_SETLIMITTEXT, 9, 0);
    hwnd_u4e0b_u62c9_u68461 = CreateWindowW(L"COMBOBOX", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | CBS_DROPDOWN | CBS_AUTOHSCROLL | WS_VSCROLL, VL_ScaleX(hwnd, 120), VL_ScaleY(hwnd, 165), VL_ScaleX(hwnd, 60), VL_ScaleY(hwnd, 26), hwnd, (HMENU)IDC_CTRL_4, g_hInstance, NULL);
    SendMessageW(hwnd_u4e0b_u62c9_u68461, WM_SETFONT, (WPARAM)hFont, TRUE);
    VL_PrepareComboBox(hwnd_u4e0b_u62c9_u68461, 26, 8);
    VL_FillItems(hwnd_u4e0b_u62c9_u68461, L"一;二");
    VL_SetSelectedIndex(hwnd_u4e0b_u62c9_u68461, 1);
    if (hwnd_u9009_u9879_u53611) VL_Tab_ResizePanels(hwnd_u9009_u9879_u53611);
    VL_ContextMenu_SetDesignContextAllowed((intptr_t)hwnd, true);
    int _vlBox3 = VL_Flex_AddBox(hwnd, -1, 0, 10, 160, 200, 36, L"flexGap=4");
    (void)_vlBox3;
    VL_Flex_AddControl(hwnd, _vlBox3, hwnd_u6587_u672c_u68461, L"flexGrow=1");
    VL_Flex_AddControl(hwnd, _vlBox3, hwnd_u4e0b_u62c9_u68461, L"");
    VL_ApplyFlexLayout(hwnd);
    RemovePropW(hwnd, L"VL_Creating");
}

LRESULT CALLBACK WndProc__u8bbe_u7f6e(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    LRESULT _vlResult = 0;
    if (VL_WindowMessage(hwnd, msg, wParam, lParam, &_vlResult)) return _vlResult;
    switch (msg) {
    case WM_COMMAND: {
        WORD notifyCode = HIWORD(wParam);
        WORD ctrlId = LOWORD(wParam);
        (void)notifyCode;
        if (GetPropW(hwnd, L"VL_Creating")) break;
        switch(ctrlId) {
        case 0: (void)ctrlId; break;
        default: break;
        }
        break;
    }
    case WM_NOTIFY: {
        NMHDR* nmhdr = (NMHDR*)lParam;
        if (!nmhdr || GetPropW(hwnd, L"VL_Creating")) break;
        switch(nmhdr->idFrom) {
        case 1007:
            if (nmhdr->code == LVN_ITEMCHANGED) {
                LPNMLISTVIEW _change = (LPNMLISTVIEW)lParam;
                UINT _old = (_change->uOldState & LVIS_STATEIMAGEMASK) >> 12, _new = (_change->uNewState & LVIS_STATEIMAGEMASK) >> 12;
                if ((_change->uChanged & LVIF_STATE) && _old != 0 && _new != 0 && _old != _new) On_u8bbe_u7f6e_u5217_u8868_u89c6_u56fe1_ItemCheckStateChange(_change->iItem, _new == 2);
            }
            break;
        case 0: (void)nmhdr; break;
        }
        break;
    }
    case WM_CLOSE:
        if (!On__u8bbe_u7f6e_CloseQuery()) return 0;
        On__u8bbe_u7f6e_Close();
        ShowWindow(hwnd, SW_HIDE);
        g_windowRegistry[std::wstring(L"设置")].createEventCalled = false;
        if (!VL_HasVisibleWindow()) DestroyWindow(g_hWndMain);
        return 0;
    case WM_DESTROY:
        g_hWnd__u8bbe_u7f6e = NULL;
        break;
    }
    return DefWindowProcW(hwnd, msg, wParam, lParam);
}

void CreateControls__u8bbe_u7f6e(HWND hwnd) {
    HFONT hFont = CreateFontW(-14, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Microsoft YaHei UI");
    hFont = VL_OwnFont(hwnd, hFont);
    SetPropW(hwnd, L"VL_Creating", (HANDLE)1);
    hwnd_u8bbe_u7f6e_u6807_u7b7e1 = CreateWindowW(g_ownerDrawLabelClassName, L"名称", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, VL_ScaleX(hwnd, 10), VL_ScaleY(hwnd, 10), VL_ScaleX(hwnd, 80), VL_ScaleY(hwnd, 20), hwnd, (HMENU)1006, g_hInstance, NULL);
    SendMessageW(hwnd_u8bbe_u7f6e_u6807_u7b7e1, WM_SETFONT, (WPARAM)hFont, TRUE);
    VL_Label_SetOptions(hwnd_u8bbe_u7f6e_u6807_u7b7e1, L"textAlign=居中;textShadow=true");
    hwnd_u8bbe_u7f6e_u5217_u8868_u89c6_u56fe1 = CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | LVS_SHOWSELALWAYS | LVS_REPORT | LVS_SINGLESEL, VL_ScaleX(hwnd, 10), VL_ScaleY(hwnd, 40), VL_ScaleX(hwnd, 150), VL_ScaleY(hwnd, 50), hwnd, (HMENU)1007, g_hInstance, NULL);
    SendMessageW(hwnd_u8bbe_u7f6e_u5217_u8868_u89c6_u56fe1, WM_SETFONT, (WPARAM)hFont, TRUE);
    ListView_SetExtendedListViewStyle(hwnd_u8bbe_u7f6e_u5217_u8868_u89c6_u56fe1, LVS_EX_DOUBLEBUFFER | LVS_EX_FULLROWSELECT | LVS_EX_CHECKBOXES);
    VL_PrepareListView(hwnd_u8bbe_u7f6e_u5217_u8868_u89c6_u56fe1, 32, 32);
    VL_ListView_AddColumn(hwnd_u8bbe_u7f6e_u5217_u8868_u89c6_u56fe1, L"列", 60);
    VL_ListView_AddRow(hwnd_u8bbe_u7f6e_u5217_u8868_u89c6_u56fe1, {std::wstring(L"值")});
    RemovePropW(hwnd, L"VL_Creating");
}

void CreateWindow__u8bbe_u7f6e() {
    if (g_hWnd__u8bbe_u7f6e) return; // already created
    static bool classRegistered = false;
    if (!classRegistered) {
        WNDCLASSW wc = {};
        wc.style = CS_DBLCLKS;
        wc.lpfnWndProc = WndProc__u8bbe_u7f6e;
        wc.hInstance = g_hInstance;
        wc.hbrBackground = (HBRUSH)(COLOR_BTNFACE + 1);
        wc.hCursor = LoadCursor(NULL, IDC_ARROW);
        wc.lpszClassName = L"VLWnd__u8bbe_u7f6e";
        RegisterClassW(&wc);
        classRegistered = true;
    }
    RECT rc = {0, 0, VL_ScaleX(NULL, 200), VL_ScaleY(NULL, 100)};
    AdjustWindowRectEx(&rc, WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | WS_MINIMIZEBOX | WS_MAXIMIZEBOX, FALSE, 0);
    int adjustedWidth = rc.right - rc.left;
    int adjustedHeight = rc.bottom - rc.top;
    g_hWnd__u8bbe_u7f6e = CreateWindowW(L"VLWnd__u8bbe_u7f6e", L"设置", WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | WS_MINIMIZEBOX | WS_MAXIMIZEBOX, CW_USEDEFAULT, CW_USEDEFAULT, adjustedWidth, adjustedHeight, NULL, NULL, g_hInstance, NULL);
    if (!g_hWnd__u8bbe_u7f6e) return;
    VL_CenterWindow(g_hWnd__u8bbe_u7f6e);
    CreateControls__u8bbe_u7f6e(g_hWnd__u8bbe_u7f6e);
    VL_ApplyDesignContextMenuBinds_Sub__u8bbe_u7f6e(g_hWnd__u8bbe_u7f6e);
    VL_Window_Register(L"设置", g_hWnd__u8bbe_u7f6e, NULL, false);
}

int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE, LPWSTR, int nCmdShow) {
    RECT rc = {0, 0, VL_ScaleX(NULL, 300), VL_ScaleY(NULL, 200)};
    AdjustWindowRectEx(&rc, WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX, FALSE, 0);
    int adjustedWidth = rc.right - rc.left;
    int adjustedHeight = rc.bottom - rc.top;
    g_hWndMain = CreateWindowW(L"VLWnd", L"登记", WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX, CW_USEDEFAULT, CW_USEDEFAULT, adjustedWidth, adjustedHeight, NULL, NULL, g_hInstance, NULL);
    VL_SetWindowLimits(g_hWndMain, 200, 0, 0, 0);
    VL_CenterWindow(g_hWndMain);
    VL_SetWindowOpacity(g_hWndMain, 80);
    CreateControls(g_hWndMain);
    VL_ApplyDesignContextMenuBinds_Main(g_hWndMain);
    VL_Window_Register(L"主窗口", g_hWndMain, NULL, false);
    VL_Window_RegisterCreator(L"设置", CreateWindow__u8bbe_u7f6e, &g_hWnd__u8bbe_u7f6e);
    CreateWindow__u8bbe_u7f6e();
    On_MainWindow_Create();  // main create
    ShowWindow(g_hWndMain, nCmdShow); UpdateWindow(g_hWndMain);
}

void On_MainWindow_Create() {
    VL_SetValue(hwnd_u6ed1_u57571, 10); // VL_LINE:2
    VL_Window_Show(g_hWnd__u8bbe_u7f6e); // VL_LINE:3
}

bool On__u8bbe_u7f6e_CloseQuery() {
    return false; // VL_LINE:12
}

void On__u9009_u9879_u53611__u6309_u94ae1_Click() {
    VL_SetTextStr(hwnd_u6587_u672c_u68461, std::wstring((std::wstring(L"甲") + VL_GetValue(hwnd_u6ed1_u57571)))); // VL_LINE:7
}

void On__u6ed1_u57571_ValueChange(int _value) {
    intptr_t _u65b0_u503c = _value; (void)_u65b0_u503c;
    int _u5f53_u524d_u503c = _value; (void)_u5f53_u524d_u503c;
    VL_Print(VL_ToOutputStr(_u65b0_u503c)); // VL_LINE:9
}

void On__u4e0b_u62c9_u68461_SelectChange(int _currentIndex, const std::wstring& _currentText) {
    int _u5f53_u524d_u7d22_u5f15 = _currentIndex; (void)_u5f53_u524d_u7d22_u5f15;
    std::wstring _u5f53_u524d_u6587_u672c = _currentText; (void)_u5f53_u524d_u6587_u672c;
    VL_Print(_u5f53_u524d_u6587_u672c); // VL_LINE:10
}

void On_u8bbe_u7f6e_u5217_u8868_u89c6_u56fe1_ItemCheckStateChange(int _VL_row, bool _VL_checked) {
    int _u884c = _VL_row; (void)_u884c;
    bool _u9009_u4e2d = _VL_checked; (void)_u9009_u4e2d;
    VL_Print(VL_ToOutputStr(_u884c)); // VL_LINE:11
}

void On_MainWindow_Ctx__u6253_u5f00() {
    VL_Print(std::wstring(L"打开")); // VL_LINE:5
}

void VL_CallWindowCreateEvent(const std::wstring& name) {
    if (name == std::wstring(L"主窗口")) On_MainWindow_Create();
    if (name == std::wstring(L"设置")) On__u8bbe_u7f6e_Create();
}
