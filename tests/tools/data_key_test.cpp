// The token and its keys as an engine sees them.
#include "tools/host/data_key.h"

#include <gtest/gtest.h>

#include "tools/host/hresult.h"

namespace {

using namespace host;

std::shared_ptr<KeyData> sample() {
    auto attributes = std::make_shared<KeyData>();
    attributes->values["Language"] = std::string("409;9");
    auto data = std::make_shared<KeyData>();
    data->values[""] = std::string("Display \xC3\xA9");
    data->values["libPath"] = std::string("/lib");
    data->values["lexPath"] = std::string();
    data->values["Count"] = DWORD{7};
    data->keys["Attributes"] = attributes;
    return data;
}

// Frees what a call handed out.
struct OutString {
    LPWSTR text = nullptr;
    ~OutString() { CoTaskMemFree(text); }
    std::string utf8() const { return text ? to_utf8(text) : "(null)"; }
};

class DataKey : public ::testing::Test {
protected:
    void TearDown() override {
        token = ComPtr<ISpObjectToken>();
        EXPECT_EQ(live_keys(), 0);
    }
    ComPtr<ISpObjectToken> token = make_token("the id", sample());
};

TEST_F(DataKey, string_value_comes_as_a_copy) {
    OutString value;
    EXPECT_EQ(token->GetStringValue(NELVA_WIDE("libPath"), &value.text), S_OK);
    EXPECT_EQ(value.utf8(), "/lib");
}

TEST_F(DataKey, names_have_no_case) {
    OutString value;
    EXPECT_EQ(token->GetStringValue(NELVA_WIDE("LIBPATH"), &value.text), S_OK);
}

TEST_F(DataKey, null_and_empty_name_are_the_default_value) {
    OutString by_null, by_empty;
    EXPECT_EQ(token->GetStringValue(nullptr, &by_null.text), S_OK);
    EXPECT_EQ(token->GetStringValue(NELVA_WIDE(""), &by_empty.text), S_OK);
    EXPECT_EQ(by_null.utf8(), "Display \xC3\xA9");
    EXPECT_EQ(by_empty.utf8(), "Display \xC3\xA9");
}

TEST_F(DataKey, empty_value_is_there) {
    OutString value;
    EXPECT_EQ(token->GetStringValue(NELVA_WIDE("lexPath"), &value.text), S_OK);
    EXPECT_EQ(value.utf8(), "");
}

TEST_F(DataKey, missing_value_is_not_found_and_null) {
    LPWSTR value = reinterpret_cast<LPWSTR>(1);
    EXPECT_EQ(token->GetStringValue(NELVA_WIDE("voxPath"), &value), SPERR_NOT_FOUND);
    EXPECT_EQ(value, nullptr);
}

TEST_F(DataKey, number_is_no_string_and_a_string_no_number) {
    OutString text;
    DWORD number = 0;
    EXPECT_EQ(token->GetStringValue(NELVA_WIDE("Count"), &text.text), SPERR_NOT_FOUND);
    EXPECT_EQ(token->GetDWORD(NELVA_WIDE("Count"), &number), S_OK);
    EXPECT_EQ(number, 7u);
    EXPECT_EQ(token->GetDWORD(NELVA_WIDE("libPath"), &number), SPERR_NOT_FOUND);
}

TEST_F(DataKey, sub_key_outlives_its_token) {
    ComPtr<ISpDataKey> attributes;
    ASSERT_EQ(token->OpenKey(NELVA_WIDE("attributes"), attributes.out()), S_OK);
    token = ComPtr<ISpObjectToken>();
    OutString value;
    EXPECT_EQ(attributes->GetStringValue(NELVA_WIDE("Language"), &value.text), S_OK);
    EXPECT_EQ(value.utf8(), "409;9");
}

TEST_F(DataKey, missing_sub_key_is_not_found_and_null) {
    ISpDataKey* key = reinterpret_cast<ISpDataKey*>(1);
    EXPECT_EQ(token->OpenKey(NELVA_WIDE("UI"), &key), SPERR_NOT_FOUND);
    EXPECT_EQ(key, nullptr);
}

TEST_F(DataKey, enumeration_ends_with_no_more_items) {
    OutString key, none, value;
    EXPECT_EQ(token->EnumKeys(0, &key.text), S_OK);
    EXPECT_EQ(key.utf8(), "Attributes");
    EXPECT_EQ(token->EnumKeys(1, &none.text), sperr_no_more_items);
    EXPECT_EQ(token->EnumValues(3, &value.text), S_OK);
    EXPECT_EQ(value.utf8(), "libPath");
}

TEST_F(DataKey, null_places_are_refused) {
    EXPECT_EQ(token->GetStringValue(NELVA_WIDE("libPath"), nullptr), E_POINTER);
    EXPECT_EQ(token->GetDWORD(NELVA_WIDE("Count"), nullptr), E_POINTER);
    EXPECT_EQ(token->OpenKey(NELVA_WIDE("Attributes"), nullptr), E_POINTER);
    EXPECT_EQ(token->EnumKeys(0, nullptr), E_POINTER);
    EXPECT_EQ(token->GetId(nullptr), E_POINTER);
    EXPECT_EQ(token->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(DataKey, writing_is_refused) {
    EXPECT_EQ(token->SetStringValue(NELVA_WIDE("a"), NELVA_WIDE("b")), E_ACCESSDENIED);
    EXPECT_EQ(token->SetDWORD(NELVA_WIDE("a"), 1), E_ACCESSDENIED);
    EXPECT_EQ(token->DeleteValue(NELVA_WIDE("libPath")), E_ACCESSDENIED);
    OutString value;
    EXPECT_EQ(token->GetStringValue(NELVA_WIDE("libPath"), &value.text), S_OK);
}

TEST_F(DataKey, token_tells_its_id) {
    OutString id;
    EXPECT_EQ(token->GetId(&id.text), S_OK);
    EXPECT_EQ(id.utf8(), "the id");
}

TEST_F(DataKey, token_is_one_object_under_its_three_interfaces) {
    for (const IID& iid : {IID_IUnknown, IID_ISpDataKey, IID_ISpObjectToken}) {
        ComPtr<IUnknown> same;
        EXPECT_EQ(token->QueryInterface(iid, reinterpret_cast<void**>(same.out())), S_OK);
        EXPECT_EQ(same.get(), static_cast<IUnknown*>(token.get()));
    }
    void* none = &none;
    EXPECT_EQ(token->QueryInterface(IID_ISpTTSEngine, &none), E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
}

TEST_F(DataKey, key_is_no_token) {
    const ComPtr<ISpDataKey> key = make_data_key(sample());
    void* none = nullptr;
    EXPECT_EQ(key->QueryInterface(IID_ISpObjectToken, &none), E_NOINTERFACE);
}

}  // namespace
