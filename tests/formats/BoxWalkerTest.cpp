// The box walker meets sizes from the file: every guard is tried on crafted bytes, in memory.

#include "formats/BoxWalker.h"
#include "support/BoxBuilder.h"

#include <gtest/gtest.h>

#include <vector>

using namespace orv;
using namespace orv::test;

namespace {

struct Seen
{
    QByteArray type;
    qint64 offset, payload, end;
    bool operator==(const Seen &) const = default;
};

std::ostream &operator<<(std::ostream &out, const Seen &s)
{
    return out << s.type.toStdString() << "@" << s.offset << "+" << (s.payload - s.offset) << ".." << s.end;
}

QByteArray typeText(quint32 type)
{
    return QByteArray::fromStdString({char(type >> 24), char(type >> 16), char(type >> 8), char(type)});
}

struct Walk
{
    std::vector<Seen> boxes;
    bool complete = false;
};

Walk topLevel(const QByteArray &bytes, BoxWalker::Form form = BoxWalker::Form::Bmff, qint64 begin = 0)
{
    MemoryByteSource source(bytes);
    BoxWalker walker(source, form);
    Walk walk;
    walk.complete = walker.children(begin, source.length(), 0, [&](const Box &box) {
        walk.boxes.push_back({typeText(box.type), box.offset, box.payload, box.end});
        return true;
    });
    return walk;
}

struct GuardCase
{
    const char *name;
    QByteArray bytes;
    std::vector<Seen> expected;
    bool complete;
};

} // namespace

TEST(BoxWalker, SizesFromTheFileAreBoundByTheParentAndBrokenOnesEndTheWalk)
{
    const QByteArray two = box("ftyp", "isom") + box("free", "xx");
    const GuardCase cases[] = {
        {"plain boxes", two, {{"ftyp", 0, 8, 12}, {"free", 12, 20, 22}}, true},
        {"64-bit size", largeBox("mdat", "abcd") + box("moov"),
         {{"mdat", 0, 16, 20}, {"moov", 20, 28, 28}}, true},
        {"size 0 runs to the parent's end", box("ftyp", "isom") + boxClaiming(0, "mdat", "rest of file"),
         {{"ftyp", 0, 8, 12}, {"mdat", 12, 20, 32}}, true},
        {"size beyond the file", box("ftyp", "isom") + boxClaiming(4000, "moov", "short"),
         {{"ftyp", 0, 8, 12}}, false},
        {"64-bit size beyond the file", be32(1) + QByteArray("mdat") + be64(1ull << 40) + "data",
         {}, false},
        {"64-bit size below its own header", be32(1) + QByteArray("mdat") + be64(12) + "data", {}, false},
        {"size below the header", box("ftyp", "isom") + boxClaiming(4, "free", "junk"),
         {{"ftyp", 0, 8, 12}}, false},
        {"size 1 without its 64-bit size", boxClaiming(1, "mdat", "abc"), {}, false},
        {"header cut short", box("ftyp", "isom") + QByteArray("\0\0\0\x10mo", 6),
         {{"ftyp", 0, 8, 12}}, false},
    };
    for (const GuardCase &c : cases) {
        const Walk walk = topLevel(c.bytes);
        EXPECT_EQ(walk.boxes, c.expected) << c.name;
        EXPECT_EQ(walk.complete, c.complete) << c.name;
    }
}

TEST(BoxWalker, AChildPassingItsParentsEndEndsTheWalkOfThatParent)
{
    // moov claims 24 bytes; its child claims 40.
    const QByteArray bytes = box("moov", boxClaiming(40, "mvhd", QByteArray(8, '\0'))) + box("free");
    MemoryByteSource source(bytes);
    BoxWalker walker(source);
    const std::optional<Box> moov = walker.boxAt(0, source.length());
    ASSERT_TRUE(moov);
    int children = 0;
    EXPECT_FALSE(walker.children(*moov, 1, [&](const Box &) { return ++children, true; }));
    EXPECT_EQ(children, 0);
    EXPECT_TRUE(walker.boxAt(moov->end, source.length()));
}

TEST(BoxWalker, NestingIsCappedAndABoxIsNeverVisitedTwice)
{
    // A moov inside a moov inside a moov..., deeper than any real file.
    QByteArray nested = box("mvhd");
    for (int i = 0; i < 40; ++i)
        nested = box("moov", nested);
    MemoryByteSource source(nested);
    BoxWalker walker(source);
    int deepest = -1;
    std::function<bool(const Box &, int)> descend = [&](const Box &box, int depth) {
        deepest = std::max(deepest, depth);
        walker.children(box, depth + 1, [&](const Box &child) { return descend(child, depth + 1); });
        return true;
    };
    walker.children(0, source.length(), 0, [&](const Box &box) { return descend(box, 0); });
    EXPECT_EQ(deepest, BoxWalker::maxDepth);

    // An offset taken from the file that points back at a box already walked.
    const QByteArray two = box("ftyp", "isom") + box("meta");
    MemoryByteSource twice(two);
    BoxWalker again(twice);
    EXPECT_TRUE(again.boxAt(12, twice.length()));
    EXPECT_FALSE(again.boxAt(12, twice.length()));
}

TEST(BoxWalker, ManyTinyBoxesStopAtTheBoxBudget)
{
    QByteArray bytes;
    for (int i = 0; i < BoxWalker::maxBoxes + 10; ++i)
        bytes += box("free");
    const Walk walk = topLevel(bytes);
    EXPECT_EQ(int(walk.boxes.size()), BoxWalker::maxBoxes);
    EXPECT_FALSE(walk.complete);
}

TEST(BoxWalker, RiffChunksCountTheirPayloadAndPadOddSizes)
{
    const QByteArray bytes = riffChunk("IDIT", "odd") + riffChunk("ISFT", "even");
    const Walk walk = topLevel(bytes, BoxWalker::Form::Riff);
    EXPECT_EQ(walk.boxes, (std::vector<Seen>{{"IDIT", 0, 8, 11}, {"ISFT", 12, 20, 24}}));
    EXPECT_TRUE(walk.complete);

    const Walk beyond = topLevel(QByteArray("JUNK") + le32(1000) + "x", BoxWalker::Form::Riff);
    EXPECT_TRUE(beyond.boxes.empty());
    EXPECT_FALSE(beyond.complete);
}
