// One connection to the database under the vault, whatever kind of database it is. Schema, records
// and operations are written once, above this interface; everything in which databases differ is in
// the engine's own directory.
//
// The order of calls: begin_read or begin_write, any number of queue and flush, then commit or
// roll_back; and again. schema_version and require_schema are called in a transaction,
// prepare_empty outside of one.
// Every function but roll_back throws base::Failure with a VaultStatus; after a failure within a
// transaction only roll_back follows. A connection belongs to one thread at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace orvaneplatform {

// An integer or a byte string.
using Value = std::variant<std::int64_t, const std::string*>;

// The current row of a result. Columns count from 0.
class Row {
 public:
  virtual ~Row() = default;
  virtual std::int64_t integer(int column) const = 0;
  virtual std::string text(int column) const = 0;
};

// One SQL statement. Its parameters are $1, $2, ..., each used once and in this order.
struct Statement {
  std::string sql;
  std::vector<Value> values = {};
  std::function<void(const Row&)> on_row = nullptr;  // called for each row of the result
  std::int64_t* changed_rows = nullptr;              // receives how many rows it changed
};

// The words in which SQL databases differ.
struct Dialect {
  std::string_view key_column;                         // type of a key that the database assigns
  std::string (*data_source_limit)(int data_sources);  // statement that declares the limit
};

class Engine {
 public:
  virtual ~Engine() = default;

  virtual const Dialect& dialect() const = 0;

  // Returns what it is connected to, for messages.
  virtual const std::string& name() const = 0;

  // Returns the version of the stored schema, 0 for an empty database. Fails with kVaultDamaged
  // when it is the database of another program.
  virtual int schema_version() = 0;

  // Fails with kVaultDamaged unless the database holds what these statements create, and nothing
  // else but the tables that the database creates by itself.
  virtual void require_schema(std::span<const std::string> statements) = 0;

  // Makes an empty database ready for its first schema.
  virtual void prepare_empty() = 0;

  // Begins a transaction that sees the state of one moment.
  virtual void begin_read() = 0;

  // Begins a transaction that holds the write lock from its start. Fails with kVaultBusy when
  // another one holds it for longer than the wait.
  virtual void begin_write() = 0;

  // Runs the statement now or by the next flush, after those queued before it. The values are read
  // during the call only; what `on_row` and `changed_rows` refer to must exist until the flush.
  virtual void queue(const Statement& statement) = 0;

  // Returns after all queued statements have run: rows and counts have been delivered.
  virtual void flush() = 0;

  // Stores the version, in a write transaction.
  virtual void set_schema_version(int version) = 0;

  // Flushes and ends the transaction. What it wrote is durable then.
  virtual void commit() = 0;

  // Ends the transaction without a change. Without effect outside of a transaction.
  virtual void roll_back() noexcept = 0;
};

// Runs one statement of a transaction and returns how many rows it changed.
inline std::int64_t run(Engine& engine, Statement statement) {
  std::int64_t changed_rows = 0;
  statement.changed_rows = &changed_rows;
  engine.queue(statement);
  engine.flush();
  return changed_rows;
}

}  // namespace orvaneplatform
