// Runs one SQL statement.
#pragma once

#include <soci/soci.h>

#include <string>

namespace orvaneplatform {

// Runs the statement with soci::use and soci::into for its parameters and columns, and returns how
// many rows it changed. Not SOCI's own `session << text`: that runs the statement in a destructor,
// even when memory ran out before its parameters were bound, and builds the text in a stream, which
// then silently drops the rest.
template <typename... Exchanged>
long long run_statement(soci::session& sql, const std::string& text,
                        const Exchanged&... exchanged) {
  soci::statement statement(sql);
  (statement.exchange(exchanged), ...);
  statement.alloc();
  statement.prepare(text);
  statement.define_and_bind();
  statement.execute(true);
  return statement.get_affected_rows();
}

}  // namespace orvaneplatform
