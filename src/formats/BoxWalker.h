#pragma once

#include "formats/ByteSource.h"

#include <QByteArray>

#include <functional>
#include <optional>
#include <set>

namespace orv {

// A four-character code as the files spell it, compared as a big-endian number.
constexpr quint32 fourCC(const char (&code)[5])
{
    return quint32(quint8(code[0])) << 24 | quint32(quint8(code[1])) << 16
         | quint32(quint8(code[2])) << 8 | quint32(quint8(code[3]));
}

// One box (an atom of ISO base media and QuickTime files, a chunk of RIFF files): where it
// begins, where its payload begins and where it ends, all absolute in the source.
struct Box
{
    quint32 type = 0;
    qint64 offset = 0;
    qint64 payload = 0;
    qint64 end = 0;

    qint64 size() const { return end - offset; }
    qint64 payloadSize() const { return end - payload; }
};

// The walk over the boxes of one file. Sizes come from the file and are never trusted:
//  - a box that would pass its parent's end ends the walk of that parent;
//  - a 32-bit size of 1 takes the 64-bit size behind the type, a size of 0 runs to the parent's
//    end, any other size below the header is broken and ends the walk;
//  - nesting deeper than maxDepth, a box met a second time (an offset read from the file may
//    point back), or more than maxBoxes boxes in all end it too.
// Only headers are read; payloads, such as a movie's media data, are left to the callers.
class BoxWalker
{
public:
    enum class Form {
        Bmff, // 32-bit big-endian size including the header, then the type
        Riff, // the type, then a 32-bit little-endian size of the payload, padded to even
    };

    static constexpr int maxDepth = 16;
    static constexpr int maxBoxes = 20000;

    explicit BoxWalker(const ByteSource &source, Form form = Form::Bmff)
        : m_source(source), m_form(form) {}

    const ByteSource &source() const { return m_source; }

    // The box whose header stands at `offset` inside a parent ending at `parentEnd`; nothing
    // when the header cannot be read or breaks a guard. Every box handed out is counted.
    std::optional<Box> boxAt(qint64 offset, qint64 parentEnd);

    // Calls `visit` for each child in [begin, end), in order, until it answers false or a guard
    // ends the walk. `depth` is the children's nesting level (top level 0). Answers false when a
    // guard ended the walk, true when it ran to the end or was stopped by `visit`.
    bool children(qint64 begin, qint64 end, int depth, const std::function<bool(const Box &)> &visit);
    bool children(const Box &parent, int depth, const std::function<bool(const Box &)> &visit)
    {
        return children(parent.payload, parent.end, depth, visit);
    }
    // The first child of the given type, or nothing.
    std::optional<Box> firstChild(qint64 begin, qint64 end, int depth, quint32 type);
    std::optional<Box> firstChild(const Box &parent, int depth, quint32 type)
    {
        return firstChild(parent.payload, parent.end, depth, type);
    }

private:
    const ByteSource &m_source;
    Form m_form;
    std::set<qint64> m_visited;
    int m_boxCount = 0;
};

} // namespace orv
