#pragma once

#include <istream>
#include <sstream>
#include <string>

namespace suite {

/// Reads labels and their values from a labelled text and says in which line it met something else. One thread at a time.
class LabelReader
{
public:
    /// Takes all of the stream. \param name what messages call the file.
    LabelReader(std::istream& stream, std::string name);

    /// Reads that label, or a brace. Fails when another word stands there.
    void expect(const std::string& label);

    /// Reads that label if it is the next word.
    bool found(const std::string& label);

    /// Reads on behind the brace that closes the present section. Fails when there is none.
    void skipSection();

    /// Reads a label and the word behind it. Fails when either is missing.
    std::string word(const std::string& label);

    /// Reads a label and the number behind it, in the notation of C. Fails when either is missing.
    double number(const std::string& label);

    /// Reads a label and the whole number behind it. Fails when either is missing or the number not from least to most.
    int whole(const std::string& label, int least, int most);

    /// The number behind a label that was read already.
    double value(const std::string& label);

    /// \throw brvUtils::FileError always: the file, the line of the word read last, and the text.
    [[noreturn]] void fail(const std::string& what);

private:
    std::string nextWord(const std::string& label);

    std::string name_;
    std::string text_;
    std::istringstream stream_;
};

} // namespace suite
