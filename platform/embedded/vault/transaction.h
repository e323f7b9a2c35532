// Transactions of the vault database as values: what is not committed is rolled back.
#pragma once

#include "platform/embedded/vault/engine.h"

namespace orvaneplatform {

class Transaction {
 public:
  ~Transaction() {
    if (!committed_) {
      engine_.roll_back();
    }
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit() {
    engine_.commit();
    committed_ = true;
  }

 protected:
  Transaction(Engine& engine, void (Engine::*begin)()) : engine_(engine) { (engine.*begin)(); }

 private:
  Engine& engine_;
  bool committed_ = false;
};

// Sees the state of one moment, whatever others write meanwhile.
class ReadTransaction : public Transaction {
 public:
  explicit ReadTransaction(Engine& engine) : Transaction(engine, &Engine::begin_read) {}
};

// Holds the write lock; its commit is durable.
class WriteTransaction : public Transaction {
 public:
  explicit WriteTransaction(Engine& engine) : Transaction(engine, &Engine::begin_write) {}
};

}  // namespace orvaneplatform
