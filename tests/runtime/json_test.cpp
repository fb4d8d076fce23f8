// JSON: reading, writing, files, values by path.
#include "runtime_test.h"

#include "59_json.h"

namespace {

std::wstring repeated(const wchar_t *text, int times)
{
    std::wstring result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

void roundTripTest()
{
    struct Row
    {
        const wchar_t *text;
        const wchar_t *written;
    };
    const Row rows[] = {
        {L" {\"b\" : [1,2.50,-3e2], \"a\":null} ", L"{\"a\":null, \"b\":[1, 2.5, -300]}"},
        {L"\xFEFF[true,false,[],{}]", L"[true, false, [], {}]"},
        {L"\"\\u4e2D\\uD83D\\uDE00\\/\\n\\u0001\"", L"\"\u4E2D\xD83D\xDE00/\\n\\u0001\""},
        {L"9223372036854775807", L"9223372036854775807"},
        {L"9223372036854775808", L"9.22337203685478e+18"},
        {L"-0", L"0"},
        {L"{\"k\":1,\"k\":2}", L"{\"k\":2}"},
        {L"\"\"", L"\"\""},
    };
    for (const Row &row : rows) {
        const VL_Any value = VL_ParseJsonToAny(row.text);
        CHECK_EQ(VL_GenerateJsonFromAny(value), std::wstring(row.written));
        CHECK_EQ(VL_GenerateJsonFromAny(VL_ParseJsonToAny(row.written)), std::wstring(row.written));
    }
}

void refusedTest()
{
    const wchar_t *rows[] = {L"",         L"{",       L"[1,]",   L"{\"a\" 1}", L"{a:1}", L"01",
                             L"1.",       L"1e",      L"+1",     L".5",        L"tru",   L"nullx",
                             L"\"a",      L"\"\\x\"", L"\"\n\"", L"\"\\u12\"", L"[1] 2", L"-",
                             L"{\"a\":}", L"'a'",     L"[1 2]",  L"NaN",       L"\"\\",  L"{,}"};
    for (const wchar_t *text : rows) {
        VL_Any value(1);
        std::wstring error;
        CHECK_EQ(VL_ParseJson(text, value, &error), false);
        CHECK(value.type == VL_Any::TypeNone && !error.empty());
    }
    std::wstring error;
    VL_Any value;
    VL_ParseJson(L"{\n \"a\": x}", value, &error);
    CHECK_EQ(error, std::wstring(L"\u7B2C 2 \u884C\u7B2C 7 \u5217\uFF1AJSON \u683C\u5F0F\u9519"
                                 L"\u8BEF"));
}

void limitsTest()
{
    VL_Any value;
    CHECK(VL_ParseJson(repeated(L"[", 512) + repeated(L"]", 512), value));
    CHECK(!VL_ParseJson(repeated(L"[", 513) + repeated(L"]", 513), value));
    CHECK(!VL_ParseJson(repeated(L"{\"a\":", 2000000), value));
    const std::wstring large = L"[" + repeated(L"{\"a\":\"\u4E2D\", \"b\":1.5}, ", 100000) + L"0]";
    CHECK(VL_ParseJson(large, value));
    CHECK_EQ(VL_GenerateJsonFromAny(value).size(), large.size());
    CHECK_EQ(VL_GenerateJsonFromAny(VL_Array{NAN, INFINITY, VL_ByteArray("a", 1)}),
             std::wstring(L"[null, null, [97]]"));
}

void prettyTest()
{
    const VL_Any value = VL_ParseJsonToAny(L"{\"b\":[1,{\"c\":\"x\"}],\"a\":{}}");
    CHECK_EQ(VL_GenerateJsonFromAny(value, true),
             std::wstring(L"{\n  \"a\": {},\n  \"b\": [\n    1,\n    {\n      \"c\": \"x\"\n    }\n"
                          L"  ]\n}\n"));
    CHECK_EQ(VL_GenerateJsonFromAny(VL_NewDictAny(), true), std::wstring(L"{}\n"));
    CHECK_EQ(VL_JsonEscapeW(L"\"\\\b\f\t\x1F/\u4E2D"),
             std::wstring(L"\"\\\"\\\\\\b\\f\\t\\u001f/\u4E2D\""));
}

void pathsTest()
{
    const std::wstring json =
        L"{\"user\":{\"name\":\"\u674E\",\"tags\":[\"x\",[5]],\"a.b\":true,\"n\":\"12\"}}";
    CHECK_EQ(VL_JSON_GetString(json, L"user.name"), std::wstring(L"\u674E"));
    CHECK_EQ(VL_JSON_GetInt(json, L"user.tags[1][0]"), (intptr_t)5);
    CHECK_EQ(VL_JSON_GetInt(json, L"user.n"), (intptr_t)12);
    CHECK_EQ(VL_JSON_GetBool(json, L"user.a.b"), true);
    CHECK_EQ(VL_JSON_GetString(json, L"user.tags"), std::wstring(L"[\"x\", [5]]"));
    for (const wchar_t *path : {L"user.tags[2]", L"user.tags[-1]", L"user.tags[x]", L"user.tags[",
                                L"none.name", L"user.name.x", L".."})
        CHECK_EQ(VL_JSON_GetString(json, path, L"?"), std::wstring(L"?"));
    CHECK_EQ(VL_JSON_ArrayLength(json, L"user.tags"), (intptr_t)2);
    CHECK_EQ(VL_JSON_GetKeys(json, L"user").size(), (size_t)4);
    CHECK_EQ(VL_JSON_GetType(json, L"user.tags"), std::wstring(L"\u6570\u7EC4"));
}

void filesTest()
{
    const std::wstring path = L"json_test_\u4E2D.json";
    VL_Any value;
    value[L"k"] = L"\u503C";
    CHECK(VL_WriteJsonFileEx(path, value));
    CHECK_EQ(VL_ReadFile(path), std::wstring(L"{\n  \"k\": \"\u503C\"\n}\n"));
    CHECK(VL_ReadJsonFileEx(path) == value);
    CHECK(VL_WriteJsonFileEx(path, L"[1]"));
    CHECK_EQ(VL_ReadFile(path), std::wstring(L"[1]"));
    CHECK(VL_ReadJsonFileEx(L"missing.json").type == VL_Any::TypeNone);
    DeleteFileW(path.c_str());
}

} // namespace

void runTests()
{
    roundTripTest();
    refusedTest();
    limitsTest();
    prettyTest();
    pathsTest();
    filesTest();
}
