#include "tests/platform/recording_engine.h"

#include <gtest/gtest.h>

#include <deque>

#include "base/failure.h"
#include "platform/embedded/vault/engine_choice.h"
#include "platform/embedded/vault/sqlite/database_file.h"
#include "platform/embedded/vault/sqlite/sqlite_engine.h"
#include "platform/vault_status.h"

namespace test {
namespace {

using orvaneplatform::Statement;
using orvaneplatform::Value;

std::string calls;
int calls_until_failure = -1;

// A statement with values of its own.
struct KeptStatement {
  explicit KeptStatement(const Statement& queued) : statement(queued) {
    for (Value& value : statement.values) {
      if (const auto* text = std::get_if<const std::string*>(&value)) {
        value = &texts.emplace_back(**text);
      }
    }
  }
  Statement statement;
  std::deque<std::string> texts;
};

class RecordingEngine : public orvaneplatform::Engine {
 public:
  explicit RecordingEngine(const std::string& path) : below_(path) {}
  ~RecordingEngine() override { EXPECT_EQ(state_, kIdle); }

  const orvaneplatform::Dialect& dialect() const override { return below_.dialect(); }
  const std::string& name() const override { return below_.name(); }
  int schema_version() override {
    EXPECT_TRUE(pending_.empty() && state_ != kIdle);
    return below_.schema_version();
  }
  void require_schema(std::span<const std::string> statements) override {
    EXPECT_NE(state_, kIdle);
    below_.require_schema(statements);
  }
  void prepare_empty() override {
    record("prepare_empty", kIdle);
    below_.prepare_empty();
  }
  void begin_read() override {
    record("begin_read", kIdle);
    below_.begin_read();
    state_ = kReading;
  }
  void begin_write() override {
    record("begin_write", kIdle);
    below_.begin_write();
    state_ = kWriting;
  }
  void queue(const Statement& statement) override {
    record("queue", state_);
    EXPECT_TRUE(state_ == kWriting || (state_ == kReading && statement.sql.starts_with("SELECT")))
        << statement.sql;
    pending_.emplace_back(statement);
  }
  void flush() override {
    record("flush", state_);
    run_pending();
  }
  void set_schema_version(int version) override {
    EXPECT_EQ(state_, kWriting);
    run_pending();
    below_.set_schema_version(version);
  }
  void commit() override {
    record("commit", state_);
    EXPECT_TRUE(state_ == kReading || state_ == kWriting);
    run_pending();
    below_.commit();
    state_ = kIdle;
  }
  void roll_back() noexcept override {
    calls += "roll_back ";
    pending_.clear();
    below_.roll_back();
    state_ = kIdle;
  }

 private:
  enum State { kIdle, kReading, kWriting, kFailed };

  void record(const char* call, State expected) {
    EXPECT_EQ(state_, expected) << call;
    EXPECT_NE(state_, kFailed) << call;
    calls += std::string(call) + ' ';
    if (calls_until_failure-- == 0) {
      state_ = state_ == kIdle ? kIdle : kFailed;
      throw base::Failure(name(), "failed on request", metadata_vault::kVaultFailed);
    }
  }

  void run_pending() {
    try {
      for (const KeptStatement& kept : pending_) {
        below_.queue(kept.statement);
      }
      pending_.clear();
    } catch (const base::Failure&) {
      state_ = kFailed;
      throw;
    }
  }

  orvaneplatform::SqliteEngine below_;
  std::deque<KeptStatement> pending_;
  State state_ = kIdle;
};

}  // namespace

std::string take_calls() { return std::exchange(calls, ""); }

void fail_after(int count) { calls_until_failure = count; }

}  // namespace test

namespace orvaneplatform {

std::unique_ptr<Engine> open_engine(const VaultLocation& location) {
  return database_file_exists(location.name)
             ? std::make_unique<test::RecordingEngine>(location.name)
             : nullptr;
}

void create_database(const VaultLocation& location) { create_database_file(location.name); }

}  // namespace orvaneplatform
