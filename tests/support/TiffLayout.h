#pragma once

#include "support/ByteWriter.h"
#include "support/MediaFile.h"

#include <QByteArray>
#include <vector>

namespace orv::test {

enum class TiffType : quint16 {
    Byte = 1,
    Ascii = 2,
    Short = 3,
    Long = 4,
    Rational = 5,
    Undefined = 7
};

// One IFD entry. Its value is kept independent of byte order and encoded when the layout is
// written: raw bytes for Byte, Ascii and Undefined; numbers for Short and Long; numerator and
// denominator pairs for Rational.
struct TiffEntry
{
    quint16 tag = 0;
    TiffType type = TiffType::Undefined;
    QByteArray bytes{};
    std::vector<quint32> numbers{};
    int target = -1;                             // a section whose offset is this Long's value
    quint32 MediaOffsets::*reportedAs = nullptr; // receives the absolute offset of the value
};

// Lays out a TIFF block: the 8-byte header, then directories and blobs in the order they were
// added, each on an even offset. Sections refer to each other by the ids answered here, so
// pointers can be made before their target is filled.
class TiffLayout
{
public:
    int addDirectory(quint32 MediaOffsets::*reportedAs = nullptr);
    int addBlob(QByteArray bytes);
    void setEntries(int directory, std::vector<TiffEntry> entries);
    void chain(int directory, int next);

    // Serialises with header offsets relative to the header; reported offsets add fileOffset,
    // the position of the header in the file. The first section must be IFD0.
    QByteArray write(ByteOrder order, quint32 fileOffset, MediaOffsets &offsets);
    quint32 sectionOffset(int section) const { return m_sections.at(section).position; }

private:
    struct Section
    {
        bool isDirectory = false;
        std::vector<TiffEntry> entries{};
        QByteArray blob{};
        int next = -1;
        quint32 MediaOffsets::*reportedAs = nullptr;
        quint32 position = 0;
    };

    quint32 sizeOf(const Section &section) const;
    void writeDirectory(ByteWriter &out, const Section &section, quint32 fileOffset,
                        MediaOffsets &offsets) const;

    std::vector<Section> m_sections;
};

} // namespace orv::test
