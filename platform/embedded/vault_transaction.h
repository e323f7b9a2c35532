// Transactions of the vault database as values: what is not committed is rolled back.
#pragma once

#include <soci/soci.h>

#include "platform/embedded/sqlite_engine.h"

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
    sql_ << "COMMIT";
    committed_ = true;
  }

 protected:
  explicit Transaction(soci::session& sql) : sql_(sql) {}

 private:
  void roll_back() noexcept {
    try {
      sql_ << "ROLLBACK";
    } catch (const soci::soci_error&) {
      // The database has rolled back by itself, as it does on some errors.
    }
  }

  soci::session& sql_;
  bool committed_ = false;
};

// Reads one moment's state, whatever others write meanwhile.
class ReadTransaction : public Transaction {
 public:
  explicit ReadTransaction(soci::session& sql) : Transaction(sql) { sql << "BEGIN"; }
};

// Holds the write lock; its commit is durable.
class WriteTransaction : public Transaction {
 public:
  explicit WriteTransaction(soci::session& sql) : Transaction(sql) {
    sqlite_engine::begin_write(sql);
  }
};

}  // namespace orvaneplatform
