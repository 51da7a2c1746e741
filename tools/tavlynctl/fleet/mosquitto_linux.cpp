// libmosquitto, which is loaded when a command needs it: the others start as fast as without it.
#include <dlfcn.h>
#include <mosquitto.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/broker_trouble.h"
#include "tools/broker_url.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/fleet/broker.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/watch/watching.h"

namespace tavlyn::ctl {
namespace {

constexpr const char* kMosquitto = "libmosquitto.so.1";
constexpr const char* kSystemCertificates = "/etc/ssl/certs";
constexpr int kKeepAlive = 30;  // s
constexpr int kTurn = 50;       // ms
constexpr int kUnanswered = -1;

struct MosquittoCalls {
  decltype(&mosquitto_lib_init) libInit;
  decltype(&mosquitto_new) create;
  decltype(&mosquitto_destroy) destroy;
  decltype(&mosquitto_username_pw_set) usernamePwSet;
  decltype(&mosquitto_tls_set) tlsSet;
  decltype(&mosquitto_tls_opts_set) tlsOptsSet;
  decltype(&mosquitto_connect_callback_set) connectCallbackSet;
  decltype(&mosquitto_disconnect_callback_set) disconnectCallbackSet;
  decltype(&mosquitto_subscribe_callback_set) subscribeCallbackSet;
  decltype(&mosquitto_message_callback_set) messageCallbackSet;
  decltype(&mosquitto_log_callback_set) logCallbackSet;
  decltype(&mosquitto_ssl_get) sslGet;
  long (*verdictOf)(const void* tls);  // of OpenSSL, with which libmosquitto comes
  decltype(&mosquitto_connect) connect;
  decltype(&mosquitto_disconnect) disconnect;
  decltype(&mosquitto_subscribe_multiple) subscribeMultiple;
  decltype(&mosquitto_publish) publish;
  decltype(&mosquitto_loop) loop;
  decltype(&mosquitto_strerror) strerror;
  decltype(&mosquitto_connack_string) connackString;
};

template <typename Call>
void FindCall(void* library, const char* name, Call& call) {
  call = reinterpret_cast<Call>(dlsym(library, name));
  if (call == nullptr) throw Failure(kBadFile, std::string(kMosquitto) + " has no " + name);
}

MosquittoCalls LoadMosquitto() {
  void* library = dlopen(kMosquitto, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    throw Failure(kBadFile, std::string("the fleet needs ") + kMosquitto + " (Debian: libmosquitto1)");
  }
  MosquittoCalls calls{};
  FindCall(library, "mosquitto_lib_init", calls.libInit);
  FindCall(library, "mosquitto_new", calls.create);
  FindCall(library, "mosquitto_destroy", calls.destroy);
  FindCall(library, "mosquitto_username_pw_set", calls.usernamePwSet);
  FindCall(library, "mosquitto_tls_set", calls.tlsSet);
  FindCall(library, "mosquitto_tls_opts_set", calls.tlsOptsSet);
  FindCall(library, "mosquitto_connect_callback_set", calls.connectCallbackSet);
  FindCall(library, "mosquitto_disconnect_callback_set", calls.disconnectCallbackSet);
  FindCall(library, "mosquitto_subscribe_callback_set", calls.subscribeCallbackSet);
  FindCall(library, "mosquitto_message_callback_set", calls.messageCallbackSet);
  FindCall(library, "mosquitto_log_callback_set", calls.logCallbackSet);
  FindCall(library, "mosquitto_ssl_get", calls.sslGet);
  FindCall(library, "SSL_get_verify_result", calls.verdictOf);
  FindCall(library, "mosquitto_connect", calls.connect);
  FindCall(library, "mosquitto_disconnect", calls.disconnect);
  FindCall(library, "mosquitto_subscribe_multiple", calls.subscribeMultiple);
  FindCall(library, "mosquitto_publish", calls.publish);
  FindCall(library, "mosquitto_loop", calls.loop);
  FindCall(library, "mosquitto_strerror", calls.strerror);
  FindCall(library, "mosquitto_connack_string", calls.connackString);
  calls.libInit();
  return calls;
}

const MosquittoCalls& Mosquitto() {
  static const MosquittoCalls kCalls = LoadMosquitto();
  return kCalls;
}

std::string MosquittoText(int error) {
  return error == MOSQ_ERR_ERRNO ? std::strerror(errno) : Mosquitto().strerror(error);
}

constexpr BrokerWords kBrokerWords{"--ca", "--certificate and --key", "this program",
                                   "--user and --password-file, and the users of the broker"};

const char* OrNull(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

void RequireReadable(const std::string& path) {
  if (!path.empty() && ContentsOf(path).empty()) throw NothingIn(path);
}

// Of a file that nobody else may read.
std::string SecretLine(const std::string& path) {
  RequireReadable(path);
  struct stat about {};
  if (stat(path.c_str(), &about) == 0 && (about.st_mode & (S_IROTH | S_IWOTH)) != 0) {
    throw Failure(kBadFile, "others may read " + path + "; chmod o-rwx " + path);
  }
  const std::string text = ContentsOf(path);
  return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace

struct Broker::Client {
  Client() = default;
  ~Client() {
    if (handle == nullptr) return;
    Mosquitto().disconnect(handle);
    Mosquitto().destroy(handle);
  }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  mosquitto* handle = nullptr;
  std::string url;
  int connected = kUnanswered;  // then what the broker answered
  int granted = kUnanswered;
  bool isLost = false;
  std::deque<Heard> heard;
  BrokerTrouble trouble{kBrokerWords};

  [[nodiscard]] Failure Trouble(ExitCode code, const std::string& reason) const {
    const std::string what = "the broker " + url;
    if (connected == 0) return {code, what + " has gone: " + reason};
    return {code, what + ": " + trouble.Text(url, reason)};
  }

  void Require(int error) const {
    if (error != MOSQ_ERR_SUCCESS) throw Trouble(kNoDevice, MosquittoText(error));
  }

  // What is to come has come, or it takes too long.
  void Await(const int& answer) {
    const Clock::time_point end = After(kPatience);
    while (answer == kUnanswered) {
      Turn(kTurn);
      if (IsStopped()) EndStopped();
      if (Clock::now() > end) throw Failure(kNoDevice, "the broker " + url + " does not answer");
    }
  }

  void Turn(int milliseconds) {
    const int error = Mosquitto().loop(handle, milliseconds, 1);
    if (connected > 0) return;  // it was refused: Await tells why
    Require(error);
    if (isLost && connected == 0) throw Trouble(kNoDevice, MosquittoText(MOSQ_ERR_CONN_LOST));
  }
};

namespace {

template <typename State>
void ListenTo(mosquitto* handle) {
  const MosquittoCalls& call = Mosquitto();
  call.connectCallbackSet(
      handle, [](mosquitto*, void* state, int answer) { static_cast<State*>(state)->connected = answer; });
  call.disconnectCallbackSet(handle,
                             [](mosquitto*, void* state, int) { static_cast<State*>(state)->isLost = true; });
  call.subscribeCallbackSet(handle, [](mosquitto*, void* state, int, int count, const int* granted) {
    constexpr int kRefused = 0x80;
    static_cast<State*>(state)->granted = std::ranges::count(granted, granted + count, kRefused) > 0 ? 1 : 0;
  });
  call.logCallbackSet(handle, [](mosquitto* client, void* state, int level, const char* line) {
    if ((level & (MOSQ_LOG_ERR | MOSQ_LOG_WARNING)) == 0) return;
    const void* tls = Mosquitto().sslGet(client);
    static_cast<State*>(state)->trouble.Note(line, tls == nullptr ? 0 : Mosquitto().verdictOf(tls));
  });
  call.messageCallbackSet(handle, [](mosquitto*, void* state, const mosquitto_message* message) {
    const auto* payload = static_cast<const char*>(message->payload);
    const std::string text(payload == nullptr ? "" : payload, static_cast<std::size_t>(message->payloadlen));
    static_cast<State*>(state)->heard.push_back({message->topic, text, message->retain});
  });
}

void SecureLine(mosquitto* handle, const FleetWords& words) {
  const MosquittoCalls& call = Mosquitto();
  for (const std::string& path : {words.ca, words.certificate, words.key}) RequireReadable(path);
  const char* system = words.ca.empty() ? kSystemCertificates : nullptr;
  const int error =
      call.tlsSet(handle, OrNull(words.ca), system, OrNull(words.certificate), OrNull(words.key), nullptr);
  if (error != MOSQ_ERR_SUCCESS) throw Failure(kBadFile, "the certificates: " + MosquittoText(error));
  call.tlsOptsSet(handle, 1, "tlsv1.2", nullptr);
}

}  // namespace

Broker::Broker(const FleetWords& words) : client_(std::make_unique<Client>()) {
  words.Check();
  const MosquittoCalls& call = Mosquitto();
  const auto place = ParseBrokerUrl(words.url);
  client_->url = words.url;
  client_->handle = call.create(nullptr, true, client_.get());
  if (client_->handle == nullptr) throw Failure(kBadFile, std::strerror(errno));
  ListenTo<Client>(client_->handle);
  const std::string password = words.passwordFile.empty() ? "" : SecretLine(words.passwordFile);
  if (!words.user.empty()) {
    call.usernamePwSet(client_->handle, words.user.c_str(), OrNull(password));
  }
  if (place->tls) SecureLine(client_->handle, words);
  NoteStop();
  client_->Require(call.connect(client_->handle, place->host.c_str(), place->port, kKeepAlive));
  client_->Await(client_->connected);
  if (client_->connected != 0) {
    throw client_->Trouble(kNoPermission, call.connackString(client_->connected));
  }
}

Broker::~Broker() = default;

void Broker::Subscribe(const std::vector<std::string>& topics, int quality) {
  std::vector<char*> names;
  names.reserve(topics.size());
  for (const std::string& topic : topics) names.push_back(const_cast<char*>(topic.c_str()));
  client_->granted = kUnanswered;
  client_->Require(Mosquitto().subscribeMultiple(client_->handle, nullptr, static_cast<int>(names.size()),
                                                 names.data(), quality, 0, nullptr));
  client_->Await(client_->granted);
  if (client_->granted != 0) {
    throw Failure(kNoPermission,
                  "the broker " + client_->url + " does not let this user read " + topics.front());
  }
}

void Broker::Publish(const std::string& topic, const std::string& payload) {
  client_->Require(Mosquitto().publish(client_->handle, nullptr, topic.c_str(),
                                       static_cast<int>(payload.size()), payload.data(), 1, false));
}

std::optional<Heard> Broker::Hear(std::chrono::milliseconds most) {
  const Clock::time_point end = Clock::now() + most;
  while (client_->heard.empty()) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    if (left <= 0 || IsStopped()) return std::nullopt;
    client_->Turn(static_cast<int>(std::min<long long>(left, kTurn)));
  }
  Heard first = std::move(client_->heard.front());
  client_->heard.pop_front();
  return first;
}

}  // namespace tavlyn::ctl
