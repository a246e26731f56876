#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

/// The language server: what editors ask about programs, answered by the functions that the other
/// tools are made of. Names in messages are those of the Language Server Protocol, version 3.17.
namespace krel::Lsp {

using Json = nlohmann::json;

/// The numbers that the protocol has for failures.
enum class ErrorCode : int {
    ParseError = -32700,
    InvalidRequest = -32600,
    MethodNotFound = -32601,
    InvalidParams = -32602,
    InternalError = -32603,
    ServerNotInitialized = -32002,
    RequestFailed = -32803,
    RequestCancelled = -32800
};

/// A request that cannot be answered; what() is for the user.
class RequestError : public std::runtime_error {
public:
    RequestError(ErrorCode itsCode, const std::string& message)
        : std::runtime_error(message), code(itsCode) {}

    ErrorCode code;
};

}  // namespace krel::Lsp
