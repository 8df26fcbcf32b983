// LandXML number lists: the text content of an element (coordinates, face
// vertex ids, profile vertices) split at single blanks and read as doubles or
// integers, with the US survey foot conversion of imperial files.
//
// Splitting: the text is trimmed of white space at both ends, then cut at
// every blank (' '); empty pieces (several blanks in a row) are skipped. Only
// the blank separates: a tab or a line break stays inside its token.
//
// Reading: every token yields one value, read exactly as
// `double v = 0; std::istringstream(token) >> v;` (resp. int) reads it in the
// classic locale with libstdc++: leading white space is skipped, then the
// longest prefix the stream accepts is taken and the rest of the token is
// ignored. A token that is not a number yields 0; a double beyond the range
// yields +-DBL_MAX and an integer beyond the range INT_MIN or INT_MAX, as the
// stream gives them. No stream is made and no token is copied, so surfaces
// with millions of numbers are read without a heap allocation per token.
#pragma once
#include <string_view>
#include <type_traits>
#include <vector>

#include "vesk/string.h"

// The US survey foot, 1200/3937 m, to 13 decimals.
inline constexpr double kFeetToMeters = 0.3048006096012;

// Multiplies a length given in US survey feet in place by kFeetToMeters.
inline void FeetToMeters(double& value) { value *= kFeetToMeters; }

// One token read as `std::istringstream >> double` reads it (see above).
double ReadStreamDouble(std::string_view token);
// One token read as `std::istringstream >> int` reads it (see above).
int ReadStreamInt(std::string_view token);

// Calls fn(std::string_view token) for every token of an element text, in
// order; the views point into text.
template <class Fn>
void ForEachToken(std::string_view text, Fn&& fn);

// Text overloads: split an element text that the caller already holds and
// append to the list.
void ReadTokenList(std::string_view text, std::vector<vesk::String>& tokens);
void ReadDoubleList(std::string_view text, std::vector<double>& values, bool isMetric);
void ReadIntList(std::string_view text, std::vector<int>& values);

// Node overloads: read the element's own text content through the XML
// section reader (PX_String with an empty property name) and append its
// tokens or values. Node is whatever the reader's PX_ functions take (a
// reader pointer or a section); PX_String is found by argument-dependent
// lookup where the reader is declared.
template <class Node>
concept TextListNode = !std::is_convertible_v<const std::remove_cvref_t<Node>&, std::string_view>;

template <TextListNode Node>
void ReadTokenList(Node&& node, std::vector<vesk::String>& tokens) {
    CString text;
    PX_String(node, "", text);
    ReadTokenList(std::string_view(text), tokens);
}

template <TextListNode Node>
void ReadDoubleList(Node&& node, std::vector<double>& values, bool isMetric) {
    CString text;
    PX_String(node, "", text);
    ReadDoubleList(std::string_view(text), values, isMetric);
}

template <TextListNode Node>
void ReadIntList(Node&& node, std::vector<int>& values) {
    CString text;
    PX_String(node, "", text);
    ReadIntList(std::string_view(text), values);
}

// ---------------------------------------------------------------------------

namespace text_lists_detail {
// White space of the classic locale: what trimming removes and what stream
// extraction skips before a number.
constexpr bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}
}  // namespace text_lists_detail

template <class Fn>
void ForEachToken(std::string_view text, Fn&& fn) {
    using text_lists_detail::IsSpace;
    size_t begin = 0;
    size_t end = text.size();
    while (begin < end && IsSpace(text[begin])) ++begin;
    while (end > begin && IsSpace(text[end - 1])) --end;
    while (begin < end) {
        const size_t blank = text.find(' ', begin);
        const size_t stop = (blank == std::string_view::npos || blank > end) ? end : blank;
        if (stop > begin) fn(text.substr(begin, stop - begin));
        begin = stop + 1;
    }
}
