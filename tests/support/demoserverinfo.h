// Where the shared demo server listens, as its start-up script has written it.
#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace demoserver {

inline std::string infoText()
{
    const char* file = std::getenv("TAVELIN_DEMOSERVER_INFO");
    std::ifstream in(file ? file : "");
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Empty when no server was started.
inline std::string endpointUrl()
{
    const std::string text = infoText();
    const std::string key = "\"endpointUrl\"";
    const auto at = text.find(key);
    const auto begin = at == std::string::npos ? at : text.find('"', at + key.size());
    const auto end = begin == std::string::npos ? begin : text.find('"', begin + 1);
    return end == std::string::npos ? std::string() : text.substr(begin + 1, end - begin - 1);
}

} // namespace demoserver
