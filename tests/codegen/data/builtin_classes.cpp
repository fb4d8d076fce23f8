// Global variables initialization function
void __VL_InitGlobalVariables() {
}

// User function forward declarations
// DEBUG: Generating declaration for 内置类
void _u5185_u7f6e_u7c7b();

void _u5185_u7f6e_u7c7b() {
// DEBUG: Generated function 内置类 -> _u5185_u7f6e_u7c7b
    VL_JsonClass _u8d44_u6599; // VL_LINE:2
    _u8d44_u6599.loadFile(std::wstring(L"a.json")); // VL_LINE:3
    _u8d44_u6599.loadFile(std::wstring(L"b.json")); // VL_LINE:4
    VL_HttpClass _u5ba2_u6237_u7aef; // VL_LINE:5
    std::wstring _u6b63_u6587 = _u5ba2_u6237_u7aef.setTimeout(5).request(std::wstring(L"http://x")); // VL_LINE:6
    VL_Print(VL_ToOutputStr(_u5ba2_u6237_u7aef.getStatusCode()), VL_ToOutputStr(_u8d44_u6599.isValid()), _u6b63_u6587); // VL_LINE:7
}

