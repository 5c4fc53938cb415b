#ifndef TOOLS_ELEMENT_PATH_H
#define TOOLS_ELEMENT_PATH_H

#include <optional>
#include <string>
#include <vector>

// An element of the analyzer's configuration document, named by its path
// below vela: "cfg/heater/top", "output/rate" (a leading "vela/" is allowed).
// Requests about it are one line of XML from the document's root down.
class ElementPath {
public:
    // Throws UsageError for an empty path or a name XML does not allow.
    explicit ElementPath(const std::string& text);

    // "cfg/heater/top".
    std::string Text() const;
    // The request that asks for the element, with its ancestors around it.
    std::string QueryRequest() const;
    // The request that writes `value` into the element, escaped as XML text.
    std::string WriteRequest(const std::string& value) const;
    // The element in an answer to QueryRequest(): the value text when the
    // element holds only text, else the element as indented XML. None when
    // the answer does not hold it, as when the document has no such element.
    std::optional<std::string> Find(const std::string& answer) const;

private:
    std::string Wrapped(const std::string& content) const;

    std::vector<std::string> names_;
};

#endif
