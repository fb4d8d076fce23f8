// User global variables
intptr_t _u8ba1_u6570 = 0; // VL_LINE:1
std::wstring _u65f6_u95f4_u6233_u6587_u672c;

// Global variables initialization function
void __VL_InitGlobalVariables() {
    _u65f6_u95f4_u6233_u6587_u672c = VL_GetCurrentTime(); // VL_LINE:2
}

// User function forward declarations
// DEBUG: Generating declaration for 语句
void _u8bed_u53e5();
// DEBUG: Generating declaration for 无返回值的路
intptr_t _u65e0_u8fd4_u56de_u503c_u7684_u8def();

void _u8bed_u53e5() {
// DEBUG: Generated function 语句 -> _u8bed_u53e5
    intptr_t _u7532 = 1; // VL_LINE:4
    intptr_t _u4e59 = 2; // VL_LINE:4
    if (_u7532 == 1) {
        VL_Print(std::wstring(L"一")); // VL_LINE:6
    } else if ((_u7532 == 2 && !((_u4e59 > 3)))) {
        VL_Print(std::wstring(L"二")); // VL_LINE:8
    } else {
        VL_Print(VL_ToOutputStr(_u7532)); // VL_LINE:10
    }
    auto _switch_val = _u7532;
    if (_switch_val == 1) {
        VL_Print(std::wstring(L"数")); // VL_LINE:13
    } else {
        VL_Print(std::wstring(L"无")); // VL_LINE:14
    }
    {
        auto _switch_val = _u4e59;
        {
            VL_Print(std::wstring(L"只有默认")); // VL_LINE:17
        }
    }
    while ((_u7532 < 3)) {
        _u7532 = (_u7532 + 1); // VL_LINE:20
        if ((_u7532 == 2)) {
            continue;
        }
    }
    for (int _n = 0; _n < 3; _n = _n + 1) {
        for (int _n = 0; _n < 2; _n = _n + 1) {
            _u8ba1_u6570 = (_u8ba1_u6570 + 1); // VL_LINE:26
        }
    }
    for (intptr_t i = 0; (i < 3); i++) {
        VL_Print(VL_ToOutputStr(i)); // VL_LINE:28
    }
    for (_u7532 = 1; _u7532 < 10; _u7532 = _u7532 + 1) {
    }
    for (_u7532 = 1; _u7532 < 10; _u7532 = _u7532 + 2) {
        break;
    }
    _u4e59 = 0; // VL_LINE:31
    while (_u4e59 < 5) {
        if ((_u4e59 == 3)) {
            _u4e59 = _u4e59 + 1;
            continue;
        }
        VL_Print(VL_ToOutputStr(_u4e59)); // VL_LINE:34
        _u4e59 = _u4e59 + 1;
    }
    {
        intptr_t _u7532 = 5; // VL_LINE:36
        VL_Print(VL_ToOutputStr(_u7532)); // VL_LINE:37
    }
    intptr_t _u4e19 = 6; // VL_LINE:38
}

intptr_t _u65e0_u8fd4_u56de_u503c_u7684_u8def() {
// DEBUG: Generated function 无返回值的路 -> _u65e0_u8fd4_u56de_u503c_u7684_u8def
    if ((_u8ba1_u6570 > 0)) {
        return _u8ba1_u6570; // VL_LINE:42
    }
    return intptr_t();
}

