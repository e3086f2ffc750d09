#include "support/Scenario.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

void Scenario::SetUp()
{
    m_stderr = jLog::setStderr(false);
    m_log = std::make_unique<jLogBuffer>();
    m_before = jMemRegistry::snapshot();
    m_unknown_before = jMemRegistry::unknownRemovals();
}

void Scenario::TearDown()
{
    EXPECT_EQ(jMemRegistry::snapshot().changesSince(m_before), "") << "allocations not balanced";
    EXPECT_EQ(jMemRegistry::unknownRemovals(), m_unknown_before) << "unknown pointers were unregistered";
    EXPECT_EQ(m_log->countAtLeast(jLogLevel::Warning), 0u) << "unexpected log lines:\n" << m_log->dump();
    m_log.reset();
    jLog::setStderr(m_stderr);
}

void Scenario::expectLogged(const std::string& text)
{
    EXPECT_TRUE(m_log->contains(text)) << "expected a log line containing \"" << text << "\", got:\n"
                                       << m_log->dump();
    m_log->clear();
}

TempDir::TempDir()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "kuvo-test-XXXXXX").string();
    char* made = mkdtemp(pattern.data());
    m_path = made ? made : "";
}

TempDir::~TempDir()
{
    std::error_code ignored;
    if (!m_path.empty())
        std::filesystem::remove_all(m_path, ignored);
}

std::string readFileText(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return "<missing>";
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

bool writeFileText(const std::string& path, const std::string& text)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
    return static_cast<bool>(out);
}

// fontconfig keeps what it learns about a registered application font for the life of the
// process; the sanitizer build would report that as a leak of every test that draws text.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }
