#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>

namespace krel::Debug {

using Json = nlohmann::json;

/// A request that cannot be answered; what() is for the user.
class RequestError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace krel::Debug
