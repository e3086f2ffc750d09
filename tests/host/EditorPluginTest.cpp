#include "EditorPlugin.h"

#include <cstdlib>
#include <filesystem>
#include <regex>

#include "TrackEditorPlugin.h"
#include "support/Scenario.h"

using EditorPluginTest = Scenario;

TEST_F(EditorPluginTest, LoadsTheModuleAndItsEntryTable)
{
    EditorPlugin plugin;
    ASSERT_TRUE(plugin.load(KUVO_BIN_DIR "/stand_in_current")) << plugin.getError();
    ASSERT_NE(plugin.api(), nullptr);
    EXPECT_EQ(plugin.api()->version, TrackEditorPluginApi::VERSION);
    EXPECT_EQ(plugin.getPath(), KUVO_BIN_DIR "/stand_in_current/libtrack_editor.so");
}

TEST_F(EditorPluginTest, MissingModuleNamesThePathAndTheLoadersError)
{
    EditorPlugin plugin;
    EXPECT_FALSE(plugin.load("/nonexistent/plugins"));
    EXPECT_EQ(plugin.api(), nullptr);
    const std::string& error = plugin.getError();
    EXPECT_NE(error.find("/nonexistent/plugins/libtrack_editor.so"), std::string::npos) << error;
    EXPECT_NE(error.find("No such file or directory"), std::string::npos) << error;
}

TEST_F(EditorPluginTest, ModuleOfAnotherVersionIsRefused)
{
    EditorPlugin plugin;
    EXPECT_FALSE(plugin.load(KUVO_BIN_DIR "/stand_in_old"));
    EXPECT_EQ(plugin.api(), nullptr);
    EXPECT_NE(plugin.getError().find("entry table version 0, this editor needs version " +
                                     std::to_string(TrackEditorPluginApi::VERSION)),
              std::string::npos)
        << plugin.getError();
}

TEST_F(EditorPluginTest, LibraryWithoutTheEntryPointIsRefused)
{
    TempDir dir;
    std::filesystem::copy_file(KUVO_BIN_DIR "/libsample_plugin.so", dir.file("libtrack_editor.so"));
    EditorPlugin plugin;
    EXPECT_FALSE(plugin.load(dir.path()));
    EXPECT_NE(plugin.getError().find("symbol kuvo_track_editor_plugin"), std::string::npos) << plugin.getError();
}

TEST_F(EditorPluginTest, ModuleFolderIsTheEnvironmentsElseTheProgramsElseTheInstalledOne)
{
    const char* old = std::getenv(EditorPlugin::DIR_VARIABLE);
    std::string saved = old ? old : "";
    unsetenv(EditorPlugin::DIR_VARIABLE);
    // Installed, the module sits in lib/kuvo (or the system's library folder's kuvo) beside bin.
    const std::regex installed("/opt/kuvo/lib(/[^/.]+)?/kuvo");
    EXPECT_TRUE(std::regex_match(EditorPlugin::folder("/opt/kuvo/bin"), installed));
    EXPECT_EQ(EditorPlugin::folder(KUVO_BIN_DIR "/stand_in_current"), KUVO_BIN_DIR "/stand_in_current");
    setenv(EditorPlugin::DIR_VARIABLE, "", 1);
    EXPECT_TRUE(std::regex_match(EditorPlugin::folder("/opt/kuvo/bin"), installed));
    setenv(EditorPlugin::DIR_VARIABLE, "/tmp/plugins", 1);
    EXPECT_EQ(EditorPlugin::folder("/opt/kuvo/bin"), "/tmp/plugins");
    if (old)
        setenv(EditorPlugin::DIR_VARIABLE, saved.c_str(), 1);
    else
        unsetenv(EditorPlugin::DIR_VARIABLE);
}
