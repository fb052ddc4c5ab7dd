// Widgets need one QApplication for the whole run, made on the main thread before any test.

#include "support/PrivateHomes.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

namespace {

class QtApplicationEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        orv::test::usePrivateHomes();
        m_app = std::make_unique<QApplication>(m_argc, m_argv);
    }
    void TearDown() override { m_app.reset(); }

private:
    int m_argc = 1;
    char m_name[9] = "tests_ui";
    char *m_argv[2] = {m_name, nullptr};
    std::unique_ptr<QApplication> m_app;
};

[[maybe_unused]] ::testing::Environment *const environment =
    ::testing::AddGlobalTestEnvironment(new QtApplicationEnvironment);

} // namespace
