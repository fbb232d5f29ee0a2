#include "deskhost/knowledgebase/odbc_handle.h"

#include <algorithm>
#include <array>

#include "deskhost/knowledgebase/odbc_text.h"

namespace deskhost {

DatabaseFailure failure_of(SQLSMALLINT kind, SQLHANDLE handle) {
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, 1024> text{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  const SQLRETURN result = SQLGetDiagRecW(kind, handle, 1, state.data(), &native, text.data(),
                                          static_cast<SQLSMALLINT>(text.size()), &length);
  if (!SQL_SUCCEEDED(result)) return {"the driver tells no reason", "HY000"};
  const auto units = std::min<std::size_t>(static_cast<std::size_t>(length), text.size() - 1);
  return {from_odbc(text.data(), units), from_odbc(state.data(), 5)};
}

}  // namespace deskhost
