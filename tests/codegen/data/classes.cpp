// User-defined classes
extern intptr_t _u603b_u6570;
struct VL_User_学生_t {
    std::wstring _u59d3_u540d = L"";
    intptr_t _u5e74_u9f84 = 18;
    float _u8eab_u9ad8 = 0.0f;
    VL_Any _u5907_u6ce8;
    VL_User_学生_t() {}
    VL_User_学生_t(std::wstring _u540d, intptr_t _u5c81) {
        _u59d3_u540d = _u540d; // VL_LINE:17
        _u5e74_u9f84 = _u5c81; // VL_LINE:18
    }
    std::wstring _u540d_u5b57() {
        return _u59d3_u540d; // VL_LINE:21
    }
    void _u957f_u5927(VL_User_学生_t& _u522b_u4eba) {
        _u522b_u4eba._u5e74_u9f84 = (_u522b_u4eba._u5e74_u9f84 + _u5e74_u9f84); // VL_LINE:24
        VL_Print(_u540d_u5b57()); // VL_LINE:25
    }
};

struct VL_User_班级_t {
    VL_User_学生_t _u73ed_u957f;
    std::vector<VL_Any> _u5206_u6570 = std::vector<VL_Any>(3);
    std::wstring _u4ecb_u7ecd() {
        _u603b_u6570 = (_u603b_u6570 + 1); // VL_LINE:7
        return (_u73ed_u957f._u540d_u5b57() + _u603b_u6570); // VL_LINE:8
    }
};

struct VL_User_点_t {
    intptr_t x = 0;
    intptr_t y = 0;
    mutable POINT __vl_native_point_cache{};
    POINT __vl_to_native_POINT() const { POINT __v{}; __v.x = static_cast<LONG>(x); __v.y = static_cast<LONG>(y); return __v; }
    operator POINT() const { return __vl_to_native_POINT(); }
    operator const POINT*() const { __vl_native_point_cache = __vl_to_native_POINT(); return &__vl_native_point_cache; }
    operator POINT*() { __vl_native_point_cache = __vl_to_native_POINT(); return &__vl_native_point_cache; }
};


// User global variables
intptr_t _u603b_u6570 = 0; // VL_LINE:1
VL_User_班级_t _u5168_u73ed;

// Global variables initialization function
void __VL_InitGlobalVariables() {
}

// User function forward declarations
// DEBUG: Generating declaration for 用类
VL_User_学生_t _u7528_u7c7b(VL_User_学生_t& _u7532);

VL_User_学生_t _u7528_u7c7b(VL_User_学生_t& _u7532) {
// DEBUG: Generated function 用类 -> _u7528_u7c7b
    VL_User_学生_t _u4e59 = VL_User_学生_t(std::wstring(L"张三"), 20); // VL_LINE:33
    VL_User_学生_t _u4e19; // VL_LINE:34
    _u4e19._u59d3_u540d = (_u7532._u59d3_u540d + _u4e59._u540d_u5b57()); // VL_LINE:35
    _u4e59._u957f_u5927(_u4e19); // VL_LINE:36
    _u5168_u73ed._u73ed_u957f = _u4e59; // VL_LINE:37
    ([&]() -> decltype(auto) { auto&& __vl_a0 = VL_ToOutputStr(_u5168_u73ed._u73ed_u957f._u5e74_u9f84); auto&& __vl_a1 = _u5168_u73ed._u4ecb_u7ecd(); return VL_Print(__vl_a0, __vl_a1); }()); // VL_LINE:38
    return _u4e19; // VL_LINE:39
}

