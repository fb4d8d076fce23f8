// Global variables initialization function
void __VL_InitGlobalVariables() {
}

// User function forward declarations
// DEBUG: Generating declaration for 表达式
std::wstring _u8868_u8fbe_u5f0f(std::wstring _u540d, intptr_t _u6b21_u6570, VL_Any _u503c);

std::wstring _u8868_u8fbe_u5f0f(std::wstring _u540d, intptr_t _u6b21_u6570, VL_Any _u503c) {
// DEBUG: Generated function 表达式 -> _u8868_u8fbe_u5f0f
    intptr_t a = -(-5); // VL_LINE:2
    double b = (std::fmod((double)(5.5), (double)(2))); // VL_LINE:3
    intptr_t c = (5 % 2); // VL_LINE:4
    std::wstring d = ((std::wstring(L"行\n\t\"引号\"\\") + (long long)(1)) + a); // VL_LINE:5
    bool e = (!((a > 1)) && !true); // VL_LINE:6
    intptr_t f = ((a > 1) ? 1 : ((a < 0) ? 2 : 3)); // VL_LINE:7
    intptr_t _u7ea2 = (int)(COLORREF)RGB(255,0,0); // VL_LINE:8
    intptr_t _u6d45 = (int)(COLORREF)RGB(255,0,0); // VL_LINE:9
    intptr_t _u8272 = (int)(COLORREF)RGB(255,0,0); // VL_LINE:10
    std::vector<VL_Any> _u7a7a_u7684 = std::vector<VL_Any>{}; // VL_LINE:11
    VL_Array2D _u8868 = std::vector<std::vector<VL_Any>>{std::vector<VL_Any>{VL_Any(1), VL_Any(2)}, std::vector<VL_Any>{VL_Any(3)}}; // VL_LINE:12
    std::vector<VL_Any> _u5341_u4e2a(10); // VL_LINE:13
    std::wstring _u5b57 = VL_CharAt(d, 0); // VL_LINE:14
    VL_Any _u8bcd_u5178 = VL_NewDictAny();
    VL_DictSet(_u8bcd_u5178, std::wstring(L"k"), VL_Any(1));
    VL_DictSet(_u8bcd_u5178, std::wstring(L"m"), VL_Any(std::vector<VL_Any>{VL_Any(1), VL_Any(2)})); // VL_LINE:15
    VL_DictSet(_u8bcd_u5178, std::wstring(L"k"), VL_Any((VL_DictGet(_u8bcd_u5178, std::wstring(L"k")) + 1))); // VL_LINE:16
    _u8bcd_u5178[_u540d] = 2; // VL_LINE:17
    _u8bcd_u5178[std::wstring(L"内")][std::wstring(L"层")] = 3; // VL_LINE:18
    VL_Print(VL_ToOutputStr(VL_DictGet(_u8bcd_u5178, std::wstring(L"m"))[0]), VL_ToOutputStr(_u8868[1][0]), VL_ToOutputStr(_u7a7a_u7684)); // VL_LINE:19
    VL_Print(VL_ToOutputStr(VL_StrLen(d, true)), VL_ToStr(5), VL_ToOutputStr((intptr_t)VL_ToLongLong(std::wstring(L"7")))); // VL_LINE:20
    VL_Print(VL_StrReplace(d, std::wstring(L"a"), std::wstring(L"b"), true, true, 0, 1), VL_ToOutputStr(VL_RoundTo(2.567, 2))); // VL_LINE:21
    _u8868_u8fbe_u5f0f(std::wstring(L"x"), 3, 5); // VL_LINE:22
    return _u540d; // VL_LINE:23
}

