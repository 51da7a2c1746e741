#include <mosquitto.h>
#include <openssl/ssl.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "tools/broker_url.h"
#include "tools/tavlynd/broker.h"

namespace tavlyn::agent {
namespace {

constexpr std::int64_t kFirstAway = 500;
constexpr std::int64_t kLongestAway = 60'000;
constexpr unsigned kDoublings = 7;
constexpr std::int64_t kMostConnecting = 20'000;
constexpr std::int64_t kBetweenTurns = 1000;  // keep-alive is counted in seconds
constexpr int kAcknowledged = 1;              // quality of service: at least once
// A command that nobody takes is not kept by the broker: a door must not open when the network comes back.
constexpr int kAtMostOnce = 0;

std::string Reason(int code) {
  return code == MOSQ_ERR_ERRNO ? std::strerror(errno) : mosquitto_strerror(code);
}

constexpr BrokerWords kBrokerWords{"ca", "certificate and certificate-key", "tls",
                                   "user, password and password-file, and the users of the broker"};

const char* OrNull(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

// A key with a passphrase would be asked for on a terminal.
int NoPassphrase(char* /*buffer*/, int /*size*/, int /*writing*/, void* /*client*/) { return 0; }

}  // namespace

Broker::Broker(Terms terms, Heard heard)
    : terms_(std::move(terms)),
      heard_(std::move(heard)),
      ears_(new Ears{*this, BrokerTrouble(kBrokerWords)}),
      chance_(std::random_device{}()) {
  mosquitto_lib_init();
  client_.reset(mosquitto_new(terms_.clientId.c_str(), false, ears_.get()),
                [ears = ears_](mosquitto* client) {
                  mosquitto_destroy(client);
                  mosquitto_lib_cleanup();
                });
  if (client_ != nullptr) SetUp();
}

void Broker::SetUp() {
  const Settings& settings = terms_.settings;
  mosquitto* client = client_.get();
  Listen();
  mosquitto_int_option(client, MOSQ_OPT_TCP_NODELAY, 1);
  mosquitto_max_inflight_messages_set(client, 0);  // the owner sees to it
  isSetUp_ = mosquitto_will_set(client, terms_.willTopic.c_str(), static_cast<int>(terms_.will.size()),
                                terms_.will.data(), kAcknowledged, true) == MOSQ_ERR_SUCCESS;
  if (!settings.user.empty()) {
    mosquitto_username_pw_set(client, settings.user.c_str(), OrNull(settings.password));
  }
  if (const auto url = ParseBrokerUrl(settings.url); url && url->tls) SetUpTls();
}

// Without authorities of its own it takes those of the system. libmosquitto's option for these is not used:
// with it a second connection is refused.
void Broker::SetUpTls() {
  constexpr const char* kOfTheSystem = "/etc/ssl/certs";
  constexpr int kVerifyPeer = 1;
  const Settings& settings = terms_.settings;
  int code =
      mosquitto_tls_set(client_.get(), OrNull(settings.ca), settings.ca.empty() ? kOfTheSystem : nullptr,
                        OrNull(settings.certificate), OrNull(settings.certificateKey), NoPassphrase);
  const std::string version = "tlsv" + settings.leastTls;
  if (code == MOSQ_ERR_SUCCESS) {
    code = mosquitto_tls_opts_set(client_.get(), kVerifyPeer, version.c_str(), nullptr);
  }
  if (code == MOSQ_ERR_SUCCESS) return;
  isSetUp_ = false;
  Log(Priority::kError, "TLS cannot be set up; see ca, certificate and certificate-key: " + Reason(code));
}

// The functions of a C library are called from here: nothing may be thrown through it.
void Broker::Listen() {
  mosquitto_connect_callback_set(client_.get(), [](mosquitto*, void* self, int code) noexcept {
    static_cast<Ears*>(self)->broker.Connected(code);
  });
  // Of its log only what tells why a connection has failed.
  mosquitto_log_callback_set(
      client_.get(), [](mosquitto* client, void* self, int level, const char* line) noexcept {
        if ((level & (MOSQ_LOG_ERR | MOSQ_LOG_WARNING)) == 0) return;
        const auto* tls = static_cast<const SSL*>(mosquitto_ssl_get(client));
        static_cast<Ears*>(self)->trouble.Note(line, tls == nullptr ? 0 : SSL_get_verify_result(tls));
      });
  mosquitto_subscribe_callback_set(client_.get(),
                                   [](mosquitto*, void* self, int, int count, const int* granted) noexcept {
                                     constexpr int kRefused = 0x80;
                                     if (count > 0 && granted[0] == kRefused)
                                       static_cast<Ears*>(self)->broker.TellNoCommands();
                                   });
  mosquitto_publish_callback_set(client_.get(), [](mosquitto*, void* self, int number) noexcept {
    auto& broker = static_cast<Ears*>(self)->broker;
    const auto sent = broker.onTheirWay_.extract(number);
    if (!sent.empty() && sent.mapped() != 0) broker.heard_.delivered(sent.mapped());
  });
  mosquitto_message_callback_set(
      client_.get(), [](mosquitto*, void* self, const mosquitto_message* message) noexcept {
        const auto* bytes = static_cast<const char*>(message->payload);
        const std::string_view payload(bytes == nullptr ? "" : bytes,
                                       static_cast<std::size_t>(message->payloadlen));
        static_cast<Ears*>(self)->broker.Received(message->topic, payload, message->retain);
      });
}

// A message that the broker keeps for whoever subscribes would be carried out at each start.
void Broker::Received(const std::string& topic, std::string_view payload, bool retained) {
  if (retained) return Log(Priority::kWarning, "a retained command is not carried out: " + topic);
  heard_.command(topic, payload);
}

void Broker::TellNoCommands() {
  Log(Priority::kError, "no commands can come: the broker does not let this agent read " + terms_.commands);
}

// Once, not at every attempt.
void Broker::TellTrouble(const std::string& reason) {
  const std::string& url = terms_.settings.url;
  const std::string text = "no connection to " + url + ": " + ears_->trouble.Text(url, reason);
  if (std::exchange(told_, text) != text) Log(Priority::kWarning, text + " (it is tried again)");
}

void Broker::Connected(int code) {
  isRefused_ = code != 0;
  if (isRefused_) return TellTrouble(mosquitto_connack_string(code));
  state_ = State::kConnected;
  failures_ = 0;
  told_.clear();
  Log(Priority::kNotice, "connected to " + terms_.settings.url);
  mosquitto_subscribe(client_.get(), nullptr, terms_.commands.c_str(), kAtMostOnce);
  arrived_ = true;
}

void Broker::Connect() try {
  const auto url = ParseBrokerUrl(terms_.settings.url);
  if (!url || !isSetUp_) return Lose(Reason(MOSQ_ERR_INVAL));
  const auto keepAlive = static_cast<int>(terms_.settings.keepAlive);
  const bool isFirst = !std::exchange(begun_, true);
  isRefused_ = false;
  ears_->trouble.Forget();
  call_.emplace([client = client_, url = *url, keepAlive, isFirst] {
    const int code = isFirst ? mosquitto_connect_async(client.get(), url.host.c_str(), url.port, keepAlive)
                             : mosquitto_reconnect_async(client.get());
    return code == MOSQ_ERR_SUCCESS ? std::string() : Reason(code);
  });
  state_ = State::kCalling;
} catch (const std::system_error& error) {
  Lose(error.what());
}

void Broker::EndCall() {
  const auto reason = call_->Outcome();
  if (!reason) return;
  call_.reset();
  state_ = State::kConnecting;
  if (!reason->empty()) return Lose(*reason);
  next_ = now_ + kMostConnecting;
}

// The pause doubles; by chance it is up to half as long again, so that a site does not return all at once.
void Broker::Lose(const std::string& reason) {
  if (state_ == State::kConnected) {
    Log(Priority::kWarning, "the connection to the broker is lost: " + reason);
  } else if (!isRefused_) {
    TellTrouble(reason);
  }
  state_ = State::kAway;
  arrived_ = false;
  const std::int64_t pause = std::min(kLongestAway, kFirstAway << std::min(failures_++, kDoublings));
  next_ = now_ + pause + std::uniform_int_distribution<std::int64_t>(0, pause / 2)(chance_);
}

void Broker::AddTo(std::vector<pollfd>& polled) const {
  if (state_ == State::kCalling) return static_cast<void>(polled.push_back({call_->Number(), POLLIN, 0}));
  const int socket = state_ == State::kAway ? -1 : mosquitto_socket(client_.get());
  if (socket < 0) return;
  const int events = POLLIN | (mosquitto_want_write(client_.get()) ? POLLOUT : 0);
  polled.push_back({socket, static_cast<short>(events), 0});
}

int Broker::TurnMs(std::int64_t now) const {
  const std::int64_t left =
      state_ == State::kConnected || call_ ? kBetweenTurns : std::max<std::int64_t>(0, next_ - now);
  return static_cast<int>(std::min(left, kBetweenTurns));
}

void Broker::Serve(const std::vector<pollfd>& polled, std::int64_t now) {
  now_ = now;
  if (client_ == nullptr) return;
  if (state_ == State::kAway) {
    if (now >= next_) Connect();
    return;
  }
  if (state_ == State::kCalling) return EndCall();
  const int socket = mosquitto_socket(client_.get());
  const auto its = std::ranges::find(polled, socket, &pollfd::fd);
  const int events = its == polled.end() ? 0 : its->revents;
  int code = socket < 0 ? MOSQ_ERR_CONN_LOST : MOSQ_ERR_SUCCESS;
  if (code == MOSQ_ERR_SUCCESS && (events & (POLLIN | POLLHUP | POLLERR)) != 0) {
    code = mosquitto_loop_read(client_.get(), 1);
  }
  if (code == MOSQ_ERR_SUCCESS && (events & POLLOUT) != 0) code = mosquitto_loop_write(client_.get(), 1);
  const auto* tls = static_cast<const SSL*>(mosquitto_ssl_get(client_.get()));
  if (code == MOSQ_ERR_SUCCESS && (events & POLLHUP) != 0 && tls != nullptr &&
      SSL_is_init_finished(tls) == 0) {
    // libmosquitto has taken the error from the socket, and would wait for TLS on it.
    errno = ECONNREFUSED;
    code = MOSQ_ERR_ERRNO;
  }
  if (code == MOSQ_ERR_SUCCESS) code = mosquitto_loop_misc(client_.get());
  if (code == MOSQ_ERR_SUCCESS && state_ == State::kConnecting && now >= next_) code = MOSQ_ERR_CONN_LOST;
  if (code != MOSQ_ERR_SUCCESS) return Lose(Reason(code));
  if (std::exchange(arrived_, false)) heard_.connected();
}

bool Broker::Publish(const std::string& topic, const std::string& payload, bool retained,
                     std::int64_t event) {
  if (!IsConnected()) return false;
  int number = 0;
  const int code = mosquitto_publish(client_.get(), &number, topic.c_str(), static_cast<int>(payload.size()),
                                     payload.data(), kAcknowledged, retained);
  // What the connection did not take is sent by the next one.
  const bool taken = code == MOSQ_ERR_SUCCESS || code == MOSQ_ERR_CONN_LOST || code == MOSQ_ERR_NO_CONN;
  if (taken) onTheirWay_[number] = event;
  return taken;
}

void Broker::Leave() {
  if (IsConnected()) mosquitto_disconnect(client_.get());
  if (!call_) state_ = State::kAway;
}

}  // namespace tavlyn::agent
