// SQLite under the vault database.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string>
#include <unordered_map>

#include "platform/embedded/vault/engine.h"
#include "platform/embedded/vault/sqlite/lock_wait.h"

namespace orvaneplatform {

// The longest text or statement: an operation that meets a longer one fails with kVaultFailed.
inline constexpr int kMaxVaultTextBytes = 64 << 20;

class SqliteEngine : public Engine {
 public:
  // Opens the file at `path`, which must exist. Throws base::Failure.
  explicit SqliteEngine(const std::string& path);

  const Dialect& dialect() const override;
  const std::string& name() const override { return name_; }
  int schema_version() override;
  void require_schema(std::span<const std::string> statements) override;
  void prepare_empty() override;
  void begin_read() override;
  void begin_write() override;
  void queue(const orvaneplatform::Statement& statement) override;
  void flush() override {}
  void set_schema_version(int version) override;
  void commit() override;
  void roll_back() noexcept override;

 private:
  static int wait_for_lock(void* engine, int waits);

  template <typename Work>
  auto guarded(Work work);
  SQLite::Statement& prepared(const std::string& sql);
  void execute(const char* sql);
  int integer_pragma(const char* name);
  int vault_version();
  bool is_empty();
  void configure();
  void prepare_to_write();

  std::string name_;
  SQLite::Database database_;
  std::unordered_map<std::string, SQLite::Statement> prepared_;
  LockWait lock_wait_;
  bool is_ready_to_write_ = false;
};

}  // namespace orvaneplatform
