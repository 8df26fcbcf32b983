// A rule that ends a LandXML import: a reader that meets input it cannot go on
// with (a number list shorter than the element needs) throws
// CLandXmlImportEnded with a one-line reason naming the element. The import
// driver catches it, keeps what was already added to the document, and
// reports the reason.
#pragma once
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

class CLandXmlImportEnded : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Range-checked access to a number list: the value at index i, or the import
// ends with "<what>: <n> numbers where <i+1> are needed".
template <class T>
const T& ListAt(const std::vector<T>& list, size_t i, const std::string& what) {
    if (i >= list.size())
        throw CLandXmlImportEnded(what + ": " + std::to_string(list.size()) +
                                  (list.size() == 1 ? " number where " : " numbers where ") +
                                  std::to_string(i + 1) + " are needed");
    return list[i];
}
