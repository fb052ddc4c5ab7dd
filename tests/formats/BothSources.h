#pragma once

// Every walk runs on both kinds of byte source: a file read with pread, and the same bytes in
// memory, as the fuzzers feed them. A suite takes the kind as its parameter, alone or beside a
// corpus file, and names its cases after both.

#include "formats/ByteSource.h"
#include "support/Corpus.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>

namespace orv::test {

enum class SourceKind { File, Memory };

inline const char *sourceKindName(SourceKind kind)
{
    return kind == SourceKind::File ? "File" : "Memory";
}

inline std::unique_ptr<ByteSource> openSource(SourceKind kind, const QString &path)
{
    if (kind == SourceKind::File)
        return std::make_unique<FileByteSource>(path);
    QFile file(path);
    return std::make_unique<MemoryByteSource>(file.open(QIODevice::ReadOnly) ? file.readAll()
                                                                             : QByteArray());
}

// The bytes as a source of the kind: in memory, or first written to a file in dir (one name,
// overwritten by the next call).
inline std::unique_ptr<ByteSource> sourceOf(SourceKind kind, const QByteArray &bytes,
                                            const QTemporaryDir &dir)
{
    if (kind == SourceKind::Memory)
        return std::make_unique<MemoryByteSource>(bytes);
    const QString path = dir.filePath(QStringLiteral("bytes"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        ADD_FAILURE() << "cannot write " << path.toStdString();
    file.close();
    return std::make_unique<FileByteSource>(path);
}

// A suite of built bytes, run once per kind of source.
class OnBothSources : public testing::TestWithParam<SourceKind>
{
protected:
    // The bytes as this run's kind of source; valid until the next call.
    const ByteSource &source(const QByteArray &bytes)
    {
        m_source = sourceOf(GetParam(), bytes, m_dir);
        return *m_source;
    }

    QTemporaryDir m_dir;

private:
    std::unique_ptr<ByteSource> m_source;
};

inline auto bothSourceKinds()
{
    return testing::Values(SourceKind::File, SourceKind::Memory);
}

inline std::string sourceTestName(const testing::TestParamInfo<SourceKind> &info)
{
    return sourceKindName(info.param);
}

using CorpusFileAndSource = std::tuple<QString, SourceKind>;

inline auto corpusFilesOnBothSources(const QStringList &suffixes)
{
    return testing::Combine(testing::ValuesIn(corpusFiles(suffixes)), bothSourceKinds());
}

inline std::string corpusSourceTestName(const testing::TestParamInfo<CorpusFileAndSource> &info)
{
    return corpusTestName({std::get<0>(info.param), info.index}) + "_"
        + sourceKindName(std::get<1>(info.param));
}

} // namespace orv::test
