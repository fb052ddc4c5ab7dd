#pragma once

#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include <string>

class QTemporaryDir;

namespace orv::test {

// The shared corpus of real camera and phone files: $ORV_CORPUS_DIR when set, otherwise
// shared/corpus beside the source tree. Read-only: copy a file before writing to it.
QString corpusLocation();
bool corpusAvailable();

// Absolute paths of the corpus files whose suffix is one of suffixes (any case, without the
// dot; all files when empty), in all folders, sorted. Empty without a corpus.
QStringList corpusFiles(const QStringList &suffixes = {});

// The absolute path of a file given relative to the corpus, e.g. "exiftool-t/Canon.jpg".
QString corpusFile(const QString &relativePath);

// A writable copy of path inside dir, under the same file name; throws std::runtime_error on
// failure.
QString copyToTemporary(const QString &path, const QTemporaryDir &dir);

// A readable GoogleTest name for a test parameterised over corpus files: the file name with
// anything but letters and digits turned into "_", and the index, which keeps it unique.
std::string corpusTestName(const testing::TestParamInfo<QString> &info);

} // namespace orv::test

// Skips the current test, saying where the corpus was looked for, when it is absent.
#define ORV_SKIP_WITHOUT_CORPUS()                                                                  \
    if (!::orv::test::corpusAvailable())                                                           \
    GTEST_SKIP() << "no media corpus at " << ::orv::test::corpusLocation().toStdString()           \
                 << " (set ORV_CORPUS_DIR to point elsewhere)"
