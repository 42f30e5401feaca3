#pragma once
// Runs a call that must fail and gives the message of what it raised, checking that the failure
// has exactly the expected class (not merely a base or a derived one).

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

#include <zephra/Common/zpExceptions.h>

namespace zephra::test {

template <typename E, typename F>
std::string RaisedMessage(F&& call) {
  try {
    call();
  } catch (const Exception& error) {
    EXPECT_EQ(typeid(error).name(), typeid(E).name()) << error.Message();
    return error.Message();
  }
  ADD_FAILURE() << "nothing was raised";
  return {};
}

}  // namespace zephra::test
