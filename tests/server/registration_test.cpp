// The registry entries that a registration tool brings about, in the linked server and in the real DLL.
#include "support/server.h"

namespace {

const std::string class_key = "{A174EDD5-7D96-4DE4-BACE-EF267627D834}";
const std::string server_key = class_key + "\\InprocServer32";

class ServerRegistration : public ::testing::Test {
protected:
    void SetUp() override { server::clear_registry(); }
    void TearDown() override { server::clear_registry(false); }
};

void expect_string(const std::string& key, const std::string& name, const WideString& text) {
    const server::RegistryValue value = server::registry_value(key, name);
    EXPECT_TRUE(value.exists);
    EXPECT_EQ(value.type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(value.text, text);
    EXPECT_EQ(value.bytes, (text.size() + 1) * sizeof(WCHAR)) << "bytes, with the NUL";
}

TEST_F(ServerRegistration, writes_the_class_its_server_and_its_threading_model) {
    EXPECT_EQ(server::register_server(), S_OK);
    expect_string(class_key, "", NELVA_WIDE("Nelva TTS (OEM)"));
    expect_string(server_key, "", server::module_path());
    expect_string(server_key, "ThreadingModel", NELVA_WIDE("both"));
}

TEST_F(ServerRegistration, without_the_folder_of_classes_fails) {
    server::clear_registry(false);
    EXPECT_EQ(server::register_server(), E_FAIL);
}

TEST_F(ServerRegistration, key_that_it_created_goes_again) {
    EXPECT_EQ(server::register_server(), S_OK);
    EXPECT_EQ(server::unregister_server(), S_OK);
    EXPECT_FALSE(server::registry_key_exists(server_key));
    EXPECT_FALSE(server::registry_key_exists(class_key));
}

TEST_F(ServerRegistration, key_that_was_there_stays) {
    EXPECT_EQ(server::register_server(), S_OK);
    EXPECT_EQ(server::register_server(), S_OK);  // finds the key, and that is what counts
    EXPECT_EQ(server::unregister_server(), S_OK);
    EXPECT_TRUE(server::registry_key_exists(server_key));
    expect_string(class_key, "", NELVA_WIDE("Nelva TTS (OEM)"));
}

TEST_F(ServerRegistration, module_without_a_name_registers_without_its_path) {
    server::fail_module_name(true);
    EXPECT_EQ(server::register_server(), S_OK);
    server::fail_module_name(false);
    EXPECT_FALSE(server::registry_value(server_key, "").exists);
    expect_string(server_key, "ThreadingModel", NELVA_WIDE("both"));
}

TEST_F(ServerRegistration, object_is_made_without_a_module_name_too) {
    server::fail_module_name(true);
    const ServerObject object;
    server::fail_module_name(false);
    EXPECT_NE(object.engine, nullptr);
}

}  // namespace
