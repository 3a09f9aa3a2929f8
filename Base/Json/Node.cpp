#include "Base/Json/Node.h"
#include "Base/Json/DecodingError.h"
#include "Base/Json/HugeNumbers.h"
#include <bit>
#include <cmath>
#include <simdjson.h>

using namespace Qt::StringLiterals;
using simdjson::dom::element_type;

namespace json {

// The parser's own handle is as small as ours and as freely copied; only this file knows that they are the same.
struct Node::Access {
    using Element = simdjson::dom::element;
    struct Handle {
        const void *document;
        std::size_t index;
    };
    static_assert(sizeof(Handle) == sizeof(Element) && std::is_trivially_copyable_v<Element>);

    static Element element(const Node &node) { return std::bit_cast<Element>(Handle{node.m_document, node.m_index}); }

    static Node node(const Element &element)
    {
        const auto handle = std::bit_cast<Handle>(element);
        Node node;
        node.m_document = handle.document;
        node.m_index = handle.index;
        return node;
    }
};

namespace {

QString toText(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::optional<qint64> exactly(double number)
{
    constexpr double limit = 0x1p63;
    // The lowest is left out: what lies beyond it has been rounded to it.
    const bool fits = number > -limit && number < limit && std::trunc(number) == number;
    return fits ? std::optional(static_cast<qint64>(number)) : std::nullopt;
}

} // namespace

Node::Kind Node::kind() const
{
    if (!m_document)
        return Kind::nothing;
    switch (Access::element(*this).type()) {
    case element_type::ARRAY:
        return Kind::list;
    case element_type::OBJECT:
        return Kind::object;
    case element_type::INT64:
    case element_type::UINT64:
    case element_type::DOUBLE:
        return Kind::number;
    case element_type::STRING:
        return Kind::text;
    case element_type::BOOL:
        return Kind::boolean;
    case element_type::NULL_VALUE:
        return Kind::null;
    }
    Q_UNREACHABLE();
}

bool Node::boolean() const
{
    return Access::element(*this).get_bool().value_unsafe();
}

QString Node::text() const
{
    return toText(Access::element(*this).get_string().value_unsafe());
}

std::optional<qint64> Node::wholeNumber() const
{
    const auto element = Access::element(*this);
    switch (element.type()) {
    case element_type::INT64:
        return element.get_int64().value_unsafe();
    case element_type::DOUBLE:
        return exactly(element.get_double().value_unsafe());
    default: // a larger one
        return std::nullopt;
    }
}

std::vector<Node> Node::elements() const
{
    const auto list = Access::element(*this).get_array().value_unsafe();
    std::vector<Node> nodes;
    nodes.reserve(list.size());
    for (const auto element : list)
        nodes.push_back(Access::node(element));
    return nodes;
}

std::vector<std::pair<QString, Node>> Node::members() const
{
    const auto object = Access::element(*this).get_object().value_unsafe();
    std::vector<std::pair<QString, Node>> nodes;
    nodes.reserve(object.size());
    for (const auto [key, value] : object)
        nodes.emplace_back(toText(key), Access::node(value));
    return nodes;
}

Node Node::member(QLatin1StringView key) const
{
    if (!m_document)
        return {};
    const auto object = Access::element(*this).get_object().value_unsafe();
    const auto found = object.at_key(std::string_view(key.data(), static_cast<std::size_t>(key.size())));
    return found.error() ? Node() : Access::node(found.value_unsafe());
}

QString Node::description() const
{
    switch (kind()) {
    case Kind::nothing:
        return u"nothing"_s;
    case Kind::null:
        return u"null"_s;
    case Kind::boolean:
        return u"true or false"_s;
    case Kind::number:
        return u"the number "_s + QString::number(Access::element(*this).get_double().value_unsafe(), 'g', 17);
    case Kind::text:
        return u"text"_s;
    case Kind::list:
        return u"a list"_s;
    case Kind::object:
        return u"an object"_s;
    }
    Q_UNREACHABLE();
}

struct Document::Parser {
    simdjson::dom::parser parser;
    simdjson::dom::element root;
};

namespace {

// Newer parsers tell a whole number that is too large from one that is malformed.
template <class Fault> bool mayBeAHugeNumber(Fault fault)
{
    if constexpr (requires { Fault::BIGINT_ERROR; })
        return fault == Fault::BIGINT_ERROR || fault == Fault::NUMBER_ERROR;
    else
        return fault == Fault::NUMBER_ERROR;
}

} // namespace

Document::Document(const QByteArray &text) : m_parser(std::make_unique<Parser>())
{
    const auto parse = [this](const QByteArray &source) {
        constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
        std::string_view json(source.constData(), static_cast<std::size_t>(source.size()));
        if (json.starts_with(byteOrderMark))
            json.remove_prefix(byteOrderMark.size());
        // The parser reads past the end in whole vectors: it is told to copy the text into a buffer of its own.
        constexpr bool copies = true;
        return m_parser->parser.parse(json.data(), json.size(), copies).get(m_parser->root);
    };
    auto fault = parse(text);
    if (mayBeAHugeNumber(fault))
        fault = parse(withNumbersInBounds(text));
    if (fault)
        throw DecodingError({}, u"JSON"_s, u"a fault ("_s + QString::fromUtf8(simdjson::error_message(fault)) + u')');
}

Document::~Document() = default;

Node Document::root() const
{
    return Node::Access::node(m_parser->root);
}

} // namespace json
