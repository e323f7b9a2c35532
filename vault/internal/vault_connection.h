// The vault connection: one open object of the vault database, for the length of one call.
#pragma once

#include <memory>

namespace orvaneip {

// `Store` is CDataSource or CMetadata. The constructor creates it on the heap and opens it; the
// destructor closes and deletes it. When the database cannot be opened, queries find nothing and
// changes fail.
template <typename Store>
class VaultConnection {
 public:
  VaultConnection() : store_(new Store) { store_->init(); }
  ~VaultConnection() { store_->release(); }
  VaultConnection(const VaultConnection&) = delete;
  VaultConnection& operator=(const VaultConnection&) = delete;

  Store* operator->() const { return store_.get(); }

 private:
  std::unique_ptr<Store> store_;
};

}  // namespace orvaneip
