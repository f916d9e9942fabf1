#pragma once

#include <string>

#include "shared/text.h"
#include "shared/text_encoding.h"

namespace postrove::testing {

// Latin-1, which stands for the system's code page: every byte is the character of its value, and
// a character that it lacks becomes a question mark.
inline const CodePage kLatin1{[](const std::string& bytes) {
                                std::wstring text;
                                for (const char byte : bytes)
                                  text.push_back(static_cast<unsigned char>(byte));
                                return text;
                              },
                              [](const std::wstring& text) {
                                std::string bytes;
                                for (std::size_t i = 0; i < text.size();) {
                                  const char32_t c = text::NextCodePoint(text, &i);
                                  bytes.push_back(c <= 0xFF ? static_cast<char>(c) : '?');
                                }
                                return bytes;
                              }};

}  // namespace postrove::testing
