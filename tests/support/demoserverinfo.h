// Where the shared demo server listens, as its start-up script has written it.
#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace demoserver {

/// The address in a server's information file; empty when there is none.
inline std::string endpointUrlIn(const std::string& file)
{
    std::ifstream in(file);
    std::ostringstream content;
    content << in.rdbuf();
    const std::string text = content.str();
    const std::string key = "\"endpointUrl\"";
    const auto at = text.find(key);
    const auto begin = at == std::string::npos ? at : text.find('"', at + key.size());
    const auto end = begin == std::string::npos ? begin : text.find('"', begin + 1);
    return end == std::string::npos ? std::string() : text.substr(begin + 1, end - begin - 1);
}

/// Empty when no server was started.
inline std::string endpointUrl()
{
    const char* file = std::getenv("TAVELIN_DEMOSERVER_INFO");
    return endpointUrlIn(file ? file : "");
}

} // namespace demoserver
