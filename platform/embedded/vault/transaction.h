// Transactions of the vault database. A transaction that is not committed is rolled back.
#pragma once

#include <soci/soci.h>

#include <exception>

#include "platform/embedded/vault/run_statement.h"
#include "platform/embedded/vault/sqlite/sqlite_engine.h"

namespace orvaneplatform {

class Transaction {
 public:
  ~Transaction() {
    if (!committed_) {
      roll_back();
    }
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit() {
    run_statement(sql_, "COMMIT");
    committed_ = true;
  }

 protected:
  explicit Transaction(soci::session& sql) : sql_(sql) {}

 private:
  void roll_back() noexcept {
    try {
      run_statement(sql_, "ROLLBACK");
    } catch (const std::exception&) {
      // The database has rolled back by itself, as it does after some errors; or memory is
      // exhausted, and it will do so when the connection is closed.
    }
  }

  soci::session& sql_;
  bool committed_ = false;
};

// Reads one state of the database, whatever others write meanwhile.
class ReadTransaction : public Transaction {
 public:
  explicit ReadTransaction(soci::session& sql) : Transaction(sql) { run_statement(sql, "BEGIN"); }
};

// Holds the write lock; its commit is durable.
class WriteTransaction : public Transaction {
 public:
  explicit WriteTransaction(soci::session& sql) : Transaction(sql) {
    sqlite_engine::begin_write(sql);
  }
};

}  // namespace orvaneplatform
