#include "tests/hosts/ftp/ftp_stage.h"
#include "tests/support/run_until.h"

#include <algorithm>

namespace tarnvale::testing {
namespace {

constexpr std::chrono::seconds kPatience{60};

double Seconds(std::chrono::steady_clock::duration time) {
  return std::chrono::duration<double>(time).count();
}

}  // namespace

FtpStage::FtpStage() {
  loop.Fault.Listen([](const ProgramError& error) { ADD_FAILURE() << error.what(); });
  SetPatience({});
  pulse_.Tick.Listen([this] {
    const double now = awake_.Seconds();
    worst_gap_ = std::max(worst_gap_, now - last_pulse_);
    last_pulse_ = now;
  });
}

FtpStage::~FtpStage() = default;

void FtpStage::SetPatience(const FtpPatience& patience) {
  transport = std::make_unique<FtpTransportUnderTest>(loop, Files(), patience);
  transport->StateChanged.Listen([this](TransportState state) {
    reported.push_back(static_cast<int>(state));
    if (state == TransportState::kError) {
      EXPECT_NE(transport->ResponseCode(), kTransferNoError);
    }
  });
}

void FtpStage::Configure(const std::string& address, const std::string& user,
                         const std::string& password, int limit_s) {
  transport->SetProtocol(TransferProtocol::kFtp);
  transport->SetRemoteHost(address);
  transport->SetUserName(user);
  transport->Cancel();
  transport->SetPassword(password);
  transport->SetRequestTimeout(limit_s);
}

void FtpStage::Configure(int port, int limit_s) {
  Configure("127.0.0.1:" + std::to_string(port), "ann", "open sesame", limit_s);
}

FtpRun FtpStage::Run(const std::string& command) {
  reported.clear();
  last_pulse_ = awake_.Seconds();
  transport->Execute(command);
  EXPECT_TRUE(transport->IsBusy());
  EXPECT_TRUE(reported.empty()) << "nothing is reported before the loop yields";
  return Wait();
}

FtpRun FtpStage::Wait() {
  const auto start = Clock::now();
  const double awake_start = awake_.Seconds();
  EXPECT_TRUE(WaitFor([this] { return !transport->IsBusy(); }));
  FtpRun run{.states = reported,
             .seconds = Seconds(Clock::now() - start),
             .awake_seconds = awake_.Seconds() - awake_start};
  if (!reported.empty() && reported.back() == static_cast<int>(TransportState::kError)) {
    run.code = transport->ResponseCode();
  }
  return run;
}

bool FtpStage::WaitFor(const std::function<bool()>& condition) {
  return RunUntil(loop, condition, kPatience);
}

}  // namespace tarnvale::testing
