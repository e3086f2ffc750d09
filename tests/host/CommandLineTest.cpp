#include "CommandLine.h"

#include "support/Scenario.h"

using CommandLineTest = Scenario;

namespace {

bool parse(std::initializer_list<const char*> args, HostOptions& options, std::string& error)
{
    std::vector<const char*> argv = {"kuvo-editor"};
    argv.insert(argv.end(), args);
    return CommandLine::parse(static_cast<int>(argv.size()), argv.data(), options, error);
}

} // namespace

TEST_F(CommandLineTest, EveryOptionIsRead)
{
    HostOptions options;
    std::string error;
    ASSERT_TRUE(parse({"--scene", "a.world", "--headless", "--track", "b.anim", "--script", "c.script", "--screenshot",
                       "d.png", "--check-leaks", "--recovery-interval", "0.25", "--restore-recovery"},
                      options, error))
        << error;
    EXPECT_EQ(options.scene, "a.world");
    EXPECT_EQ(options.track, "b.anim");
    EXPECT_EQ(options.script, "c.script");
    EXPECT_EQ(options.screenshot, "d.png");
    EXPECT_TRUE(options.headless);
    EXPECT_TRUE(options.checkLeaks);
    EXPECT_EQ(options.recoverySeconds, 0.25);
    EXPECT_TRUE(options.restoreRecovery);
    EXPECT_FALSE(options.discardRecovery);
}

TEST_F(CommandLineTest, BadUsageNamesTheProblem)
{
    struct Case {
        std::initializer_list<const char*> args;
        const char* error;
    };
    const Case cases[] = {
        {{"--scene"}, "--scene needs a FILE"},
        {{"--track", "--headless"}, "--track needs a FILE"},
        {{"--script", ""}, "--script needs a FILE"},
        {{"--fast"}, "unknown argument \"--fast\""},
        {{"demo.world"}, "unknown argument \"demo.world\""},
        {{"--headless", "--headless"}, "--headless is given twice"},
        {{"--scene", "a.world", "--scene", "b.world"}, "--scene is given twice"},
        {{"--recovery-interval"}, "--recovery-interval needs SECONDS"},
        {{"--recovery-interval", "0"}, "--recovery-interval needs a number of seconds above 0, not \"0\""},
        {{"--recovery-interval", "5s"}, "--recovery-interval needs a number of seconds above 0, not \"5s\""},
        {{"--restore-recovery", "--discard-recovery"}, "--restore-recovery and --discard-recovery exclude each other"},
    };
    for (const Case& c : cases) {
        HostOptions options;
        std::string error;
        EXPECT_FALSE(parse(c.args, options, error));
        EXPECT_EQ(error, c.error);
    }
}

TEST_F(CommandLineTest, UsageListsEveryOptionAndTheFolderVariables)
{
    std::string usage = CommandLine::usage();
    for (const char* option : {"--scene FILE", "--track FILE", "--headless", "--script FILE", "--screenshot FILE",
                               "--check-leaks", "--recovery-interval SECONDS", "--restore-recovery",
                               "--discard-recovery", "KUVO_PLUGIN_DIR", "KUVO_RECOVERY_DIR", "KUVO_DATA_DIR"})
        EXPECT_NE(usage.find(option), std::string::npos) << option;
    EXPECT_EQ(CommandLine::USAGE_STATUS, 2);
}
