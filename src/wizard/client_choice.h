// The clients on a page: the list to choose from, and the icon of the chosen one.
#pragma once

#include "mfc/afxwin.h"
#include "resources/resource.h"
#include "wizard/client_combo_box.h"

#include <string>

template <typename Client> CString NameOf(Client &client) {
  CString name;
  client.GetClientName(name);
  return name;
}

// The icon of the chosen client on a page. It lives as long as the page.
class ClientIcon {
public:
  ClientIcon() = default;
  ~ClientIcon();
  ClientIcon(const ClientIcon &) = delete;
  ClientIcon &operator=(const ClientIcon &) = delete;

  // Shows the icon of the client if that isn't null.
  template <typename Client> void Show(const CWnd &page, Client *client) {
    if (client != nullptr)
      Put(page, client->GetClientIcon());
  }

  // The same for WM_PAINT.
  template <typename Client> void Paint(CWnd &page, Client *client) {
    const CPaintDC context(&page);
    Show(page, client);
  }

private:
  void Put(const CWnd &page, HICON icon);

  HICON shown = nullptr;
};

// The list of the installed clients on a page, with the icon of the chosen one.
class ClientChoice {
public:
  ClientIcon icon;

  void Bind(CDataExchange *exchange) { DDX_Control(exchange, IDC_CHOICE, list); }

  // Lists the clients that have a path and selects the first. Returns that client, null if there is none.
  template <typename Clients> auto List(const Clients &clients) {
    typename Clients::value_type::pointer first = nullptr;
    for (const auto &client : clients) {
      std::string path;
      if (client == nullptr || !client->GetClientPath(path))
        continue;
      list.AddClient(path, NameOf(*client));
      if (first == nullptr)
        first = client.get();
    }
    if (first != nullptr)
      list.SetCurSel(0);
    return first;
  }

  // Makes the first client with the selected path the chosen one and shows its icon. If there is none, returns false
  // and changes nothing.
  template <typename Clients, typename Client> bool Take(const CWnd &page, const Clients &clients, Client *&chosen) {
    std::string selected;
    if (!list.GetSelectedPath(selected))
      return false;
    for (const auto &client : clients) {
      std::string path;
      if (client == nullptr || !client->GetClientPath(path) || path != selected)
        continue;
      chosen = client.get();
      icon.Show(page, chosen);
      return true;
    }
    return false;
  }

private:
  ClientComboBox list;
};
