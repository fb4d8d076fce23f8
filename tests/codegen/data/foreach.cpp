// Global variables initialization function
void __VL_InitGlobalVariables() {
}

// User function forward declarations
// DEBUG: Generating declaration for 遍历示例
void _u904d_u5386_u793a_u4f8b();

void _u904d_u5386_u793a_u4f8b() {
// DEBUG: Generated function 遍历示例 -> _u904d_u5386_u793a_u4f8b
    std::vector<VL_Any> _u540d_u5355 = std::vector<VL_Any>{VL_Any(std::wstring(L"甲")), VL_Any(std::wstring(L"乙"))}; // VL_LINE:2
    intptr_t _u5e8f = 0; // VL_LINE:3
    VL_Any _u5143_u7d20 = std::wstring(L""); // VL_LINE:4
    {
        const int _vl_fe_n = VL_ArrayLen(_u540d_u5355);
        if (_u5e8f >= _vl_fe_n) {
            _u5143_u7d20 = VL_Any();
            VL_Print(VL_ToOutputStr(_u5143_u7d20)); // VL_LINE:6
        } else {
            for (; _u5e8f < _vl_fe_n; ++_u5e8f) {
                _u5143_u7d20 = VL_ArrayGet(_u540d_u5355, _u5e8f);
                VL_Print(VL_ToOutputStr(_u5143_u7d20)); // VL_LINE:6
            }
        }
    }
    _u5e8f = 0; // VL_LINE:8
    {
        const int _vl_fe_n = VL_ArrayLen(_u540d_u5355);
        if (_u5e8f >= _vl_fe_n) {
            _u5143_u7d20 = VL_Any();
            do {
                if ((_u5143_u7d20 == std::wstring(L"甲"))) {
                    continue;
                }
                break;
            } while (false);
        } else {
            for (; _u5e8f < _vl_fe_n; ++_u5e8f) {
                _u5143_u7d20 = VL_ArrayGet(_u540d_u5355, _u5e8f);
                if ((_u5143_u7d20 == std::wstring(L"甲"))) {
                    continue;
                }
                break;
            }
        }
    }
    {
        const int _vl_fe_n = VL_ArrayLen(_u540d_u5355);
        if (_u5e8f >= _vl_fe_n) {
            _u5143_u7d20 = VL_Any();
            {
                const int _vl_fe_n = VL_ArrayLen(_u540d_u5355);
                if (_u5e8f >= _vl_fe_n) {
                    _u5143_u7d20 = VL_Any();
                    {
                        const int _vl_fe_n = VL_ArrayLen(_u540d_u5355);
                        for (int _vl_fe_once = _u5e8f >= _vl_fe_n ? 1 : 0; _vl_fe_once == 1 || (_vl_fe_once == 0 && _u5e8f < _vl_fe_n); _vl_fe_once == 1 ? (void)(_vl_fe_once = 2) : (void)++_u5e8f) {
                            if (_vl_fe_once == 1)
                                _u5143_u7d20 = VL_Any();
                            else
                                _u5143_u7d20 = VL_ArrayGet(_u540d_u5355, _u5e8f);
                            VL_Print(VL_ToOutputStr(_u5e8f)); // VL_LINE:16
                        }
                    }
                } else {
                    for (; _u5e8f < _vl_fe_n; ++_u5e8f) {
                        _u5143_u7d20 = VL_ArrayGet(_u540d_u5355, _u5e8f);
                        {
                            const int _vl_fe_n = VL_ArrayLen(_u540d_u5355);
                            for (int _vl_fe_once = _u5e8f >= _vl_fe_n ? 1 : 0; _vl_fe_once == 1 || (_vl_fe_once == 0 && _u5e8f < _vl_fe_n); _vl_fe_once == 1 ? (void)(_vl_fe_once = 2) : (void)++_u5e8f) {
                                if (_vl_fe_once == 1)
                                    _u5143_u7d20 = VL_Any();
                                else
                                    _u5143_u7d20 = VL_ArrayGet(_u540d_u5355, _u5e8f);
                                VL_Print(VL_ToOutputStr(_u5e8f)); // VL_LINE:16
                            }
                        }
                    }
                }
            }
        } else {
            for (; _u5e8f < _vl_fe_n; ++_u5e8f) {
                _u5143_u7d20 = VL_ArrayGet(_u540d_u5355, _u5e8f);
                {
                    const int _vl_fe_n = VL_ArrayLen(_u540d_u5355);
                    if (_u5e8f >= _vl_fe_n) {
                        _u5143_u7d20 = VL_Any();
                        {
                            const int _vl_fe_n = VL_ArrayLen(_u540d_u5355);
                            for (int _vl_fe_once = _u5e8f >= _vl_fe_n ? 1 : 0; _vl_fe_once == 1 || (_vl_fe_once == 0 && _u5e8f < _vl_fe_n); _vl_fe_once == 1 ? (void)(_vl_fe_once = 2) : (void)++_u5e8f) {
                                if (_vl_fe_once == 1)
                                    _u5143_u7d20 = VL_Any();
                                else
                                    _u5143_u7d20 = VL_ArrayGet(_u540d_u5355, _u5e8f);
                                VL_Print(VL_ToOutputStr(_u5e8f)); // VL_LINE:16
                            }
                        }
                    } else {
                        for (; _u5e8f < _vl_fe_n; ++_u5e8f) {
                            _u5143_u7d20 = VL_ArrayGet(_u540d_u5355, _u5e8f);
                            {
                                const int _vl_fe_n = VL_ArrayLen(_u540d_u5355);
                                for (int _vl_fe_once = _u5e8f >= _vl_fe_n ? 1 : 0; _vl_fe_once == 1 || (_vl_fe_once == 0 && _u5e8f < _vl_fe_n); _vl_fe_once == 1 ? (void)(_vl_fe_once = 2) : (void)++_u5e8f) {
                                    if (_vl_fe_once == 1)
                                        _u5143_u7d20 = VL_Any();
                                    else
                                        _u5143_u7d20 = VL_ArrayGet(_u540d_u5355, _u5e8f);
                                    VL_Print(VL_ToOutputStr(_u5e8f)); // VL_LINE:16
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}

