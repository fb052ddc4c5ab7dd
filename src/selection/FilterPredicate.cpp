#include "selection/FilterPredicate.h"

#include "core/MySinglePic.h"

#include <QHash>

namespace orv {

namespace {

const QHash<QString, FilterKey> &keyNames()
{
    static const QHash<QString, FilterKey> names = {
        {QStringLiteral("filter_rating"), FilterKey::Rating},
        {QStringLiteral("filter_pivMakeModel"), FilterKey::MakeModel},
        {QStringLiteral("filter_pivMakeModelLens"), FilterKey::MakeModelLens},
        {QStringLiteral("filter_mediaType"), FilterKey::MediaType},
        {QStringLiteral("filter_mediaType_2"), FilterKey::MediaType2},
        {QStringLiteral("filter_dataSource"), FilterKey::DataSource},
        {QStringLiteral("filter_miscState"), FilterKey::MiscState},
        {QStringLiteral("filter_miscState_0"), FilterKey::MiscState0},
        {QStringLiteral("filter_miscState_1"), FilterKey::MiscState1},
        {QStringLiteral("filter_miscState_2"), FilterKey::MiscState2},
        {QStringLiteral("filter_miscState_3"), FilterKey::MiscState3},
        {QStringLiteral("filter_miscState_4"), FilterKey::MiscState4},
        {QStringLiteral("filter_miscState_5"), FilterKey::MiscState5},
        {QStringLiteral("filter_miscState_6"), FilterKey::MiscState6},
        {QStringLiteral("filter_miscState_7"), FilterKey::MiscState7},
        {QStringLiteral("filter_dateTimeModified"), FilterKey::DateTimeModified},
    };
    return names;
}

constexpr int miscStateCount = 8;

} // namespace

std::optional<FilterKey> FilterValues::keyNamed(const QString &name)
{
    const auto it = keyNames().constFind(name);
    if (it == keyNames().cend())
        return std::nullopt;
    return *it;
}

bool FilterValues::miscState(const MySinglePic &pic, int state)
{
    switch (state) {
    case 0: return pic.isNullerFile() || pic.spType == SpTypeNoTagsFileDate || pic.spType == SpTypeMovieFileDate;
    case 1: return pic.isKeeper || pic.isRejected;
    case 2: return pic.gpsLat.has_value() && pic.gpsLong.has_value();
    case 3: return pic.hasLocationChange();
    case 4: return pic.bundleDependentImage != nullptr || pic.bundleMasterImage != nullptr;
    case 5: return pic.isMovie();
    case 6: return pic.isUnsaved();
    case 7: return pic.hasSaveError();
    default: return false;
    }
}

QVariant FilterValues::value(const MySinglePic &pic, FilterKey key)
{
    switch (key) {
    case FilterKey::Rating: return pic.isRejected ? -1 : (pic.isKeeper ? 1 : 0);
    case FilterKey::MakeModel: return pic.pivMakeModel;
    case FilterKey::MakeModelLens:
        return pic.pivMakeModelLens().isEmpty() ? pic.pivMakeModel
                                                : QString(pic.pivMakeModel + QLatin1Char(' ') + pic.pivMakeModelLens());
    case FilterKey::MediaType: return pic.isMovie() ? 2 : 1;
    case FilterKey::MediaType2: return pic.isMovie() ? 3 : (pic.isRaw() ? 2 : 1);
    case FilterKey::DataSource: return pic.spType;
    case FilterKey::MiscState:
        for (int state = miscStateCount - 1; state >= 0; --state)
            if (miscState(pic, state))
                return state;
        return -1;
    case FilterKey::DateTimeModified: {
        const OptionalDate date = pic.spDateTimeModified();
        return date ? QVariant(date->secondsSinceEpoch()) : QVariant();
    }
    default:
        return miscState(pic, int(key) - int(FilterKey::MiscState0));
    }
}

// --- The engine ---

enum class CompareOp { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual, Contains, BeginsWith, EndsWith };

struct FilterPredicate::Node
{
    enum Kind { And, Or, Not, Compare } kind = Compare;
    std::shared_ptr<const Node> left, right;
    FilterKey key = FilterKey::Rating;
    CompareOp op = CompareOp::Equal;
    bool caseInsensitive = false, diacriticInsensitive = false;
    QVariant constant;
};

namespace {

using Node = FilterPredicate::Node;
using NodePtr = std::shared_ptr<const Node>;

QString folded(QString text, bool caseInsensitive, bool diacriticInsensitive)
{
    if (diacriticInsensitive) {
        text = text.normalized(QString::NormalizationForm_D);
        text.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
    }
    return caseInsensitive ? text.toCaseFolded() : text;
}

std::optional<double> asNumber(const QVariant &value)
{
    if (!value.isValid())
        return std::nullopt;
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok ? std::optional<double>(number) : std::nullopt;
}

template<typename T>
bool ordered(CompareOp op, const T &left, const T &right)
{
    switch (op) {
    case CompareOp::Equal: return left == right;
    case CompareOp::NotEqual: return left != right;
    case CompareOp::Less: return left < right;
    case CompareOp::LessEqual: return left <= right;
    case CompareOp::Greater: return left > right;
    case CompareOp::GreaterEqual: return left >= right;
    default: return false;
    }
}

bool compare(const Node &node, const QVariant &value)
{
    const auto leftNumber = asNumber(value);
    const auto rightNumber = asNumber(node.constant);
    const bool textOp = node.op == CompareOp::Contains || node.op == CompareOp::BeginsWith || node.op == CompareOp::EndsWith;
    if (!textOp && leftNumber && rightNumber)
        return ordered(node.op, *leftNumber, *rightNumber);
    const QString left = folded(value.toString(), node.caseInsensitive, node.diacriticInsensitive);
    const QString right = folded(node.constant.toString(), node.caseInsensitive, node.diacriticInsensitive);
    switch (node.op) {
    case CompareOp::Contains: return left.contains(right);
    case CompareOp::BeginsWith: return left.startsWith(right);
    case CompareOp::EndsWith: return left.endsWith(right);
    default: return ordered(node.op, left, right);
    }
}

bool evaluateNode(const Node &node, const MySinglePic &pic)
{
    switch (node.kind) {
    case Node::And: return evaluateNode(*node.left, pic) && evaluateNode(*node.right, pic);
    case Node::Or: return evaluateNode(*node.left, pic) || evaluateNode(*node.right, pic);
    case Node::Not: return !evaluateNode(*node.left, pic);
    case Node::Compare: return compare(node, FilterValues::value(pic, node.key));
    }
    return false;
}

// Recursive descent over the text; every failure sets m_error and answers nothing.
class Parser
{
public:
    explicit Parser(const QString &text) : m_text(text) {}

    NodePtr parseAll()
    {
        NodePtr root = parseOr();
        skipSpace();
        if (root && m_pos < m_text.size())
            return fail(QStringLiteral("unexpected text at %1").arg(m_pos));
        return root;
    }
    QString m_error;

private:
    NodePtr fail(const QString &why)
    {
        if (m_error.isEmpty())
            m_error = why;
        return nullptr;
    }
    void skipSpace()
    {
        while (m_pos < m_text.size() && m_text.at(m_pos).isSpace())
            ++m_pos;
    }
    // Takes a keyword (letters, matched case aside, not followed by a letter) or a symbol.
    bool take(const QString &token)
    {
        skipSpace();
        if (!m_text.mid(m_pos, token.size()).compare(token, Qt::CaseInsensitive)) {
            const qsizetype end = m_pos + token.size();
            if (token.at(0).isLetter() && end < m_text.size() && (m_text.at(end).isLetterOrNumber() || m_text.at(end) == u'_'))
                return false;
            m_pos = end;
            return true;
        }
        return false;
    }
    NodePtr combine(Node::Kind kind, NodePtr left, NodePtr right)
    {
        auto node = std::make_shared<Node>();
        node->kind = kind;
        node->left = std::move(left);
        node->right = std::move(right);
        return node;
    }
    NodePtr parseOr()
    {
        NodePtr left = parseAnd();
        while (left && (take(QStringLiteral("OR")) || take(QStringLiteral("||")))) {
            NodePtr right = parseAnd();
            if (!right)
                return nullptr;
            left = combine(Node::Or, left, right);
        }
        return left;
    }
    NodePtr parseAnd()
    {
        NodePtr left = parseUnary();
        while (left && (take(QStringLiteral("AND")) || take(QStringLiteral("&&")))) {
            NodePtr right = parseUnary();
            if (!right)
                return nullptr;
            left = combine(Node::And, left, right);
        }
        return left;
    }
    NodePtr parseUnary()
    {
        if (take(QStringLiteral("NOT")) || (!m_text.mid(m_pos).trimmed().startsWith(QStringLiteral("!=")) && take(QStringLiteral("!")))) {
            NodePtr inner = parseUnary();
            return inner ? combine(Node::Not, inner, nullptr) : nullptr;
        }
        if (take(QStringLiteral("("))) {
            NodePtr inner = parseOr();
            if (!inner)
                return nullptr;
            if (!take(QStringLiteral(")")))
                return fail(QStringLiteral("missing )"));
            return inner;
        }
        return parseComparison();
    }
    QString word()
    {
        skipSpace();
        const qsizetype start = m_pos;
        while (m_pos < m_text.size() && (m_text.at(m_pos).isLetterOrNumber() || m_text.at(m_pos) == u'_'))
            ++m_pos;
        return m_text.mid(start, m_pos - start);
    }
    NodePtr parseComparison()
    {
        const QString name = word();
        const auto key = FilterValues::keyNamed(name);
        if (!key)
            return fail(QStringLiteral("unknown filter property \"%1\"").arg(name));
        auto node = std::make_shared<Node>();
        node->key = *key;
        static const std::pair<const char *, CompareOp> ops[] = {
            {"==", CompareOp::Equal},         {"!=", CompareOp::NotEqual},      {"<>", CompareOp::NotEqual},
            {"<=", CompareOp::LessEqual},     {">=", CompareOp::GreaterEqual},  {"=", CompareOp::Equal},
            {"<", CompareOp::Less},           {">", CompareOp::Greater},        {"CONTAINS", CompareOp::Contains},
            {"BEGINSWITH", CompareOp::BeginsWith}, {"ENDSWITH", CompareOp::EndsWith},
        };
        bool found = false;
        for (const auto &[symbol, op] : ops) {
            if (take(QString::fromLatin1(symbol))) {
                node->op = op;
                found = true;
                break;
            }
        }
        if (!found)
            return fail(QStringLiteral("missing comparison after \"%1\"").arg(name));
        if (m_pos < m_text.size() && m_text.at(m_pos) == u'[') {
            const qsizetype close = m_text.indexOf(u']', m_pos);
            if (close < 0)
                return fail(QStringLiteral("missing ]"));
            const QString modifiers = m_text.mid(m_pos + 1, close - m_pos - 1);
            for (QChar c : modifiers) {
                if (c == u'c')
                    node->caseInsensitive = true;
                else if (c == u'd')
                    node->diacriticInsensitive = true;
                else
                    return fail(QStringLiteral("unknown modifier %1").arg(c));
            }
            m_pos = close + 1;
        }
        if (!parseConstant(*node))
            return fail(QStringLiteral("missing value after \"%1\"").arg(name));
        return node;
    }
    bool parseConstant(Node &node)
    {
        skipSpace();
        if (m_pos >= m_text.size())
            return false;
        const QChar quote = m_text.at(m_pos);
        if (quote == u'\'' || quote == u'"') {
            const qsizetype close = m_text.indexOf(quote, m_pos + 1);
            if (close < 0)
                return false;
            node.constant = m_text.mid(m_pos + 1, close - m_pos - 1);
            m_pos = close + 1;
            return true;
        }
        const qsizetype start = m_pos;
        while (m_pos < m_text.size() && (m_text.at(m_pos).isLetterOrNumber() || QStringLiteral("-+._").contains(m_text.at(m_pos))))
            ++m_pos;
        const QString token = m_text.mid(start, m_pos - start);
        if (token.isEmpty())
            return false;
        const QString upper = token.toUpper();
        if (upper == u"TRUE" || upper == u"YES")
            node.constant = 1;
        else if (upper == u"FALSE" || upper == u"NO")
            node.constant = 0;
        else if (bool ok = false; token.toDouble(&ok), ok)
            node.constant = token.toDouble();
        else
            node.constant = token;
        return true;
    }

    const QString &m_text;
    qsizetype m_pos = 0;
};

} // namespace

std::optional<FilterPredicate> FilterPredicate::parse(const QString &text, QString *error)
{
    Parser parser(text);
    NodePtr root = parser.parseAll();
    if (!root) {
        if (error)
            *error = parser.m_error;
        return std::nullopt;
    }
    FilterPredicate predicate;
    predicate.m_text = text;
    predicate.m_root = std::move(root);
    return predicate;
}

bool FilterPredicate::evaluate(const MySinglePic &pic) const
{
    return evaluateNode(*m_root, pic);
}

} // namespace orv
