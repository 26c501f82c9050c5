#pragma once

#include "brvUtils/export.h"

#include <list>
#include <map>
#include <string>

namespace brvUtils {

/// The kind of a module of the suite: a code from 0, which is none, to 21.
class BRVUTILS_API VeloraType
{
public:
    /// None.
    VeloraType();

    /// The kind of a code; none when there is no such kind.
    VeloraType(int code);

    /// The kind whose alias is found in the text (see fromString); none without one.
    VeloraType(const std::string& text);

    /// Copies take the code.
    VeloraType(const VeloraType&) = default;

    /// Takes the code.
    VeloraType& operator=(const VeloraType&) = default;

    /// Takes any code as it is, unlike the constructor: kept for callers.
    VeloraType& operator=(int code);

    /// As fromString.
    VeloraType& operator=(const std::string& text);

    /// The code.
    operator int() const;

    /// Whether it is a kind: a code from 1 to 21.
    operator bool() const;

    /// Whether the codes are the same.
    bool operator==(const VeloraType& other) const;

    /// Whether it is this code.
    bool operator==(int code) const;

    /// The name for people. \throw std::out_of_range for a code without one.
    std::string toString() const;

    /// Becomes the first kind, in the order of codes, one of whose aliases is part of the text; case does not count. Stays
    /// what it was when there is none.
    void fromString(const std::string& text);

    /// How many codes there are: 22.
    static int getNbType();

private:
    static const std::map<int, std::string> names;
    static const std::map<int, std::list<std::string>> aliases; ///< Lower case.

    int code_ = 0;
};

} // namespace brvUtils
