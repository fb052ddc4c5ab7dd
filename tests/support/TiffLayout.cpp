#include "support/TiffLayout.h"

#include <stdexcept>

namespace orv::test {
namespace {

constexpr quint32 kHeaderSize = 8;
constexpr quint32 kEntrySize = 12;

quint32 even(quint32 size)
{
    return size + size % 2;
}

quint32 countOf(const TiffEntry &entry)
{
    switch (entry.type) {
    case TiffType::Short:
    case TiffType::Long:
        return quint32(entry.numbers.size());
    case TiffType::Rational:
        return quint32(entry.numbers.size() / 2);
    default:
        return quint32(entry.bytes.size());
    }
}

QByteArray encodedValue(const TiffEntry &entry, ByteOrder order)
{
    ByteWriter value(order);
    switch (entry.type) {
    case TiffType::Short:
        for (quint32 number : entry.numbers)
            value.u16(quint16(number));
        break;
    case TiffType::Long:
    case TiffType::Rational:
        for (quint32 number : entry.numbers)
            value.u32(number);
        break;
    default:
        value.bytes(entry.bytes);
    }
    return value.data();
}

quint32 valueSize(const TiffEntry &entry)
{
    switch (entry.type) {
    case TiffType::Short:
        return countOf(entry) * 2;
    case TiffType::Long:
        return countOf(entry) * 4;
    case TiffType::Rational:
        return countOf(entry) * 8;
    default:
        return countOf(entry);
    }
}

} // namespace

int TiffLayout::addDirectory(quint32 MediaOffsets::*reportedAs)
{
    m_sections.push_back({.isDirectory = true, .reportedAs = reportedAs});
    return int(m_sections.size() - 1);
}

int TiffLayout::addBlob(QByteArray bytes)
{
    m_sections.push_back({.blob = std::move(bytes)});
    return int(m_sections.size() - 1);
}

void TiffLayout::setEntries(int directory, std::vector<TiffEntry> entries)
{
    m_sections.at(directory).entries = std::move(entries);
}

void TiffLayout::chain(int directory, int next)
{
    m_sections.at(directory).next = next;
}

quint32 TiffLayout::sizeOf(const Section &section) const
{
    if (!section.isDirectory)
        return quint32(section.blob.size());
    quint32 size = 2 + kEntrySize * quint32(section.entries.size()) + 4;
    for (const TiffEntry &entry : section.entries) {
        if (valueSize(entry) > 4)
            size += even(valueSize(entry));
    }
    return size;
}

QByteArray TiffLayout::write(ByteOrder order, quint32 fileOffset, MediaOffsets &offsets)
{
    if (m_sections.empty() || !m_sections.front().isDirectory)
        throw std::logic_error("a TIFF layout starts with IFD0");
    quint32 position = kHeaderSize;
    for (Section &section : m_sections) {
        section.position = even(position);
        position = section.position + sizeOf(section);
    }

    ByteWriter out(order);
    out.bytes(order == ByteOrder::Intel ? QByteArrayView("II") : QByteArrayView("MM"));
    out.u16(42);
    out.u32(m_sections.front().position);
    for (const Section &section : m_sections) {
        out.zeros(section.position - out.size());
        if (section.reportedAs)
            offsets.*section.reportedAs = fileOffset + section.position;
        if (section.isDirectory)
            writeDirectory(out, section, fileOffset, offsets);
        else
            out.bytes(section.blob);
    }
    return out.data();
}

void TiffLayout::writeDirectory(ByteWriter &out, const Section &section, quint32 fileOffset,
                                MediaOffsets &offsets) const
{
    std::vector<QByteArray> outOfLine;
    quint32 dataPosition = section.position + 2 + kEntrySize * quint32(section.entries.size()) + 4;

    out.u16(quint16(section.entries.size()));
    for (const TiffEntry &entry : section.entries) {
        TiffEntry resolved = entry;
        if (entry.target >= 0)
            resolved.numbers = {m_sections.at(entry.target).position};
        const QByteArray value = encodedValue(resolved, out.order());

        out.u16(entry.tag);
        out.u16(quint16(entry.type));
        out.u32(countOf(resolved));
        quint32 valuePosition = out.size();
        if (value.size() <= 4) {
            out.bytes(value);
            out.zeros(4 - value.size());
        } else {
            valuePosition = dataPosition;
            out.u32(dataPosition);
            dataPosition += even(quint32(value.size()));
            outOfLine.push_back(value);
        }
        if (entry.reportedAs)
            offsets.*entry.reportedAs = fileOffset + valuePosition;
    }
    out.u32(section.next >= 0 ? m_sections.at(section.next).position : 0);
    for (const QByteArray &value : outOfLine) {
        out.bytes(value);
        out.padToEven();
    }
}

} // namespace orv::test
