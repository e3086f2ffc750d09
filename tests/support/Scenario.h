#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "kit/jLog.h"
#include "kit/jMemRegistry.h"

// Base fixture for every scenario: it checks at the end that the allocation registry is back where
// it started and that nothing at warning level or above was logged, unless the test took those lines
// with expectLogged. Log lines are kept in memory rather than printed.
class Scenario : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Asserts that a line containing text was logged since the last call, and consumes the
    // warnings and errors logged so far so that they do not fail the scenario.
    void expectLogged(const std::string& text);
    // The lines logged during the scenario.
    const jLogBuffer& log() const { return *m_log; }

private:
    std::unique_ptr<jLogBuffer> m_log;
    jMemSnapshot m_before;
    size_t m_unknown_before = 0;
    bool m_stderr = true;
};

// A fresh empty folder under the system's temporary folder, removed with everything in it on
// destruction.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return m_path; }
    // Returns path() joined with name.
    std::string file(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

// Returns the whole content of a file, or "<missing>" when it cannot be read.
std::string readFileText(const std::string& path);
// Writes text to a file, replacing it; returns false when it cannot be written.
bool writeFileText(const std::string& path, const std::string& text);
