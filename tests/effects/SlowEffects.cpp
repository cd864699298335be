// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/effects/SlowEffects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

constexpr double kPi = 3.14159265358979323846;

double CurvePoint(int i, int size) {
	return std::clamp(std::sin((std::sin((static_cast<double>(i) / size - 0.5) * kPi) + 1.0) * kPi / 4.0), 0.0, 1.0);
}

double CurveAt(int index, int size) {
	return CurvePoint(std::min(index, size - 1), size);
}

double CurveBetween(double x, int size) {
	const double p = std::clamp(x * (size - 1), 0.0, size - 1.0);
	const int i = static_cast<int>(p);
	return std::clamp(CurveAt(i, size) * (1.0 - (p - i)) + CurveAt(i + 1, size) * (p - i), 0.0, 1.0);
}

int PowerOfTwoAtLeast(int n) {
	int size = 1;
	while (size < n)
		size *= 2;
	return size;
}

class TSlowFollower {
public:
	TSlowFollower(double attack, double release, double rate)
	    : mAttack(std::exp(-1000.0 / (attack * rate))),
	      mSmooth(std::exp(-100.0 / (attack * rate))),
	      mRelease(std::exp(-1.0 / (release * 0.001 * rate))) {}

	double Process(float left, float right) {
		const double a = (std::abs(left) + std::abs(right)) / 2.0f / 32767.0;
		if (mEnvelope <= a)
			mEnvelope = a + mAttack * (mEnvelope - a);
		else if (mEnvelope > 9.999999747378752e-6)
			mEnvelope = a + mRelease * (mEnvelope - a);
		return mOutput = mEnvelope + mSmooth * (mOutput - mEnvelope);
	}

private:
	double mAttack, mSmooth, mRelease;
	double mEnvelope = 0.0, mOutput = 0.0;
};

/// One channel's recording that fills up, with reading beyond its end allowed.
struct TTape {
	std::vector<float> mSamples;
	std::size_t mCapacity;

	explicit TTape(int capacity) : mCapacity(static_cast<std::size_t>(capacity)) {}

	void Restart() { mSamples.clear(); }

	void Record(float x) {
		if (mSamples.size() < mCapacity)
			mSamples.push_back(x);
	}

	float At(int i) const {
		return i >= 0 && static_cast<std::size_t>(i) < mSamples.size() ? mSamples[static_cast<std::size_t>(i)] : 0.0f;
	}
};

class TSlowModulator final : public TSlowEffect {
public:
	explicit TSlowModulator(const TSettings& settings)
	    : TSlowEffect(settings),
	      mFollower(Linear(21, 0.5, 250), Linear(22, 0.5, 250), Rate()) {}

	void Start() override { mPhase = kPi / 2.0; }

	std::pair<double, double> Process(float left, float right) override {
		const double f = Frequency(17, 1, 5000), d = Normalized(18), o = Normalized(19), fm = Normalized(20);
		const double envelope = mFollower.Process(left, right);
		const double hz = std::clamp(f + envelope * (fm - 0.5) * 2.0 * 5000.0, 1.0, 5000.0);
		const double s = Normalized(23) * 2.0 - 1.0;
		const double sl = std::sin(mPhase - s * 1.5707963705062866);
		const double sr = std::sin(mPhase + s * 1.5707963705062866);
		mPhase = std::fmod(mPhase + hz / Rate() * 2.0 * kPi, 2.0 * kPi);
		return {
		    left * sl * d + (1.0 - d) * left + sl * o * 32767.0, right * sr * d + (1.0 - d) * right + sr * o * 32767.0};
	}

private:
	TSlowFollower mFollower;
	double mPhase = 0.0;
};

class TSlowTapeStop final : public TSlowEffect {
public:
	explicit TSlowTapeStop(const TSettings& settings)
	    : TSlowEffect(settings),
	      mLeft(Rate() * 15),
	      mRight(Rate() * 15),
	      mNextLeft(OneMillisecond()),
	      mNextRight(OneMillisecond()),
	      mCurveSize(PowerOfTwoAtLeast(static_cast<int>(Rate() / 44100.0 * 256.0))) {}

	void Start() override {
		mLeft.Restart();
		mRight.Restart();
		mMain = {0.0, PlayMode() >= 2, 0};
		Retrigger();
	}

	void Retrigger() override {
		mNextLeft.Restart();
		mNextRight.Restart();
		mNext = {0.0, PlayMode() >= 2, 0};
		mSwitch = 0;
	}

	std::pair<double, double> Process(float left, float right) override {
		mLeft.Record(left);
		mRight.Record(right);
		const auto [speed, gain] = Motion(mMain);
		std::pair<double, double> out{Read(mLeft, mMain.mPosition) * gain, Read(mRight, mMain.mPosition) * gain};
		if (mSwitch < OneMillisecond()) {
			mNextLeft.Record(left);
			mNextRight.Record(right);
			const double s = CurveAt(mSwitch++, OneMillisecond());
			const auto [speed2, gain2] = Motion(mNext);
			out.first = out.first * (1.0 - s) + Read(mNextLeft, mNext.mPosition) * gain2 * s;
			out.second = out.second * (1.0 - s) + Read(mNextRight, mNext.mPosition) * gain2 * s;
			if (mSwitch == OneMillisecond()) {
				mMain = mNext;
				// What lies behind the new recording stays from the old one, but is written over before it is read.
				mLeft.mSamples = mNextLeft.mSamples;
				mRight.mSamples = mNextRight.mSamples;
			}
			mNext.mPosition = std::fmod(mNext.mPosition + speed2, OneMillisecond() - 1);
			Turn(mNext);
		}
		mMain.mPosition = std::fmod(mMain.mPosition + speed, Rate() * 15 - 1);
		Turn(mMain);
		return out;
	}

private:
	struct TVoice {
		double mPosition = 0.0;
		bool mRising = false;
		int mCounter = 0;
	};

	int PlayMode() const { return Choice(40, 4); }

	int Length(bool rising) const {
		const float time = rising ? BeatTime(38, 39, 0.5, 64) : BeatTime(37, 39, 0.5, 64);
		return std::max(OneMillisecond(), static_cast<int>(Bar(39) / time));
	}

	std::pair<double, double> Motion(const TVoice& voice) const {
		const double t = std::clamp(voice.mCounter * (1.0 / Length(voice.mRising)), 0.0, 1.0);
		const double e = CurveBetween(t, mCurveSize);
		const double speed = voice.mRising ? e : 1.0 - e;
		return {speed, speed < 0.01 ? CurveBetween(speed * 100.0, mCurveSize) : 1.0};
	}

	static double Read(const TTape& tape, double position) {
		const int i = static_cast<int>(position);
		const double t = static_cast<int>((position - i) * 4095) / 4096.0;
		const double a = tape.At(std::max(0, i - 3)), b = tape.At(std::max(0, i - 2)), c = tape.At(std::max(0, i - 1)),
		             d = tape.At(i);
		return a * (-0.5 * t * t * t + t * t - 0.5 * t) + b * (1.5 * t * t * t - 2.5 * t * t + 1.0) +
		       c * (-1.5 * t * t * t + 2.0 * t * t + 0.5 * t) + d * (0.5 * t * t * t - 0.5 * t * t);
	}

	void Turn(TVoice& voice) const {
		if (voice.mCounter < Length(voice.mRising)) {
			++voice.mCounter;
		} else if (PlayMode() == 0 || PlayMode() == 2) {
			voice.mCounter = 0;
			voice.mRising = !voice.mRising;
		}
	}

	TTape mLeft, mRight, mNextLeft, mNextRight;
	int mCurveSize;
	TVoice mMain, mNext;
	int mSwitch = 0;
};

class TSlowReverser final : public TSlowEffect {
public:
	explicit TSlowReverser(const TSettings& settings)
	    : TSlowEffect(settings),
	      mLeft(static_cast<int>(Rate() * 11.25)),
	      mRight(static_cast<int>(Rate() * 11.25)),
	      mNextLeft(OneMillisecond()),
	      mNextRight(OneMillisecond()) {}

	void Start() override {
		mLeft.Restart();
		mRight.Restart();
		mMain = {};
		Retrigger();
	}

	void Retrigger() override {
		mNextLeft.Restart();
		mNextRight.Restart();
		mNext = {};
		mSwitch = 0;
	}

	std::pair<double, double> Process(float left, float right) override {
		mLeft.Record(left);
		mRight.Record(right);
		std::pair<double, double> out{mLeft.At(mMain.first), mRight.At(mMain.first)};
		if (mSwitch < OneMillisecond()) {
			mNextLeft.Record(left);
			mNextRight.Record(right);
			const double e = CurveAt(mSwitch++, OneMillisecond());
			out.first = out.first * (1.0 - e) + mNextLeft.At(mNext.first) * e;
			out.second = out.second * (1.0 - e) + mNextRight.At(mNext.first) * e;
			if (mSwitch == OneMillisecond()) {
				mMain = mNext;
				mLeft.mSamples = mNextLeft.mSamples;
				mRight.mSamples = mNextRight.mSamples;
			}
			Walk(mNext);
		}
		Walk(mMain);
		return out;
	}

private:
	using TWalker = std::pair<int, bool>;

	void Walk(TWalker& walker) const {
		const int length =
		    std::min(static_cast<int>(Bar(78) / BeatTime(77, 78, 1, 256)), static_cast<int>(Rate() * 11.25) - 1);
		const int a = static_cast<int>(static_cast<float>(length) * Normalized(79));
		const int b = static_cast<int>(static_cast<float>(length) * Normalized(80));
		const int low = Normalized(79) < Normalized(80) ? a : b;
		const int high = Normalized(79) < Normalized(80) ? b : a;
		if (walker.second) {
			if (walker.first > low)
				--walker.first;
			else
				walker.second = false;
		} else if (walker.first < high) {
			++walker.first;
		} else {
			walker.second = true;
		}
	}

	TTape mLeft, mRight, mNextLeft, mNextRight;
	TWalker mMain, mNext;
	int mSwitch = 0;
};

/// Without random sizes: every draw gives the size that is set.
class TSlowStretcher final : public TSlowEffect {
public:
	explicit TSlowStretcher(const TSettings& settings)
	    : TSlowEffect(settings),
	      mFollower(Linear(101, 0.5, 250), Linear(102, 0.5, 250), Rate()),
	      mLeft(Rate() * 16),
	      mRight(Rate() * 16),
	      mNextLeft(OneMillisecond()),
	      mNextRight(OneMillisecond()) {}

	void Start() override {
		mLeft.Restart();
		mRight.Restart();
		mMain.Restart();
		Retrigger();
	}

	void Retrigger() override {
		mNextLeft.Restart();
		mNextRight.Restart();
		mNext.Restart();
		mSwitch = 0;
	}

	std::pair<double, double> Process(float left, float right) override {
		const double envelope = mFollower.Process(left, right);
		mLeft.Record(left);
		mRight.Record(right);
		Update(mMain, envelope);
		std::pair<double, double> out{Read(mMain.mGrains[0], mLeft), Read(mMain.mGrains[1], mRight)};
		if (mSwitch < OneMillisecond()) {
			mNextLeft.Record(left);
			mNextRight.Record(right);
			const double s = CurveAt(mSwitch++, OneMillisecond());
			Update(mNext, envelope);
			out.first = Read(mNext.mGrains[0], mNextLeft) * s + out.first * (1.0 - s);
			out.second = Read(mNext.mGrains[1], mNextRight) * s + out.second * (1.0 - s);
			if (mSwitch == OneMillisecond()) {
				mMain = mNext;
				std::copy(mNextLeft.mSamples.begin(), mNextLeft.mSamples.end(), mLeft.mSamples.begin());
				std::copy(mNextRight.mSamples.begin(), mNextRight.mSamples.end(), mRight.mSamples.begin());
				mLeft.mSamples.resize(mNextLeft.mSamples.size());
				mRight.mSamples.resize(mNextRight.mSamples.size());
			}
			Advance(mNext);
		}
		Advance(mMain);
		return out;
	}

private:
	struct TGrain {
		int mPrevious = 0, mStart = 0, mPosition = 0, mLength = 4410, mFade = 2205;
	};

	struct TSet {
		double mRead = 0.0;
		std::array<TGrain, 2> mGrains;

		void Restart() {
			mRead = 0.0;
			for (TGrain& grain : mGrains)
				grain.mPrevious = grain.mStart = grain.mPosition = 0;
		}
	};

	void Update(TSet& set, double envelope) const {
		const double ms = Rate() * 0.001;
		const double size = Linear(98, 1, 100) + envelope * (Normalized(100) - 0.5) * 2.0 * 50.0;
		const double g = std::clamp(size, 1.0, 100.0);
		TGrain& left = set.mGrains[0];
		TGrain& right = set.mGrains[1];
		if (left.mPosition == 0)
			Begin(left, set.mRead, static_cast<int>(ms * g));
		if (right.mPosition == 0)
			Begin(
			    right, set.mRead,
			    left.mLength != right.mLength ? left.mLength - left.mPosition : static_cast<int>(ms * g));
	}

	void Begin(TGrain& grain, double read, int length) const {
		grain.mLength = length;
		grain.mStart = static_cast<int>(read);
		const int fade = static_cast<int>(static_cast<float>(length) * Normalized(99));
		grain.mFade = std::min(std::max(fade, static_cast<int>(Rate() * 0.001)), length);
	}

	static double Read(const TGrain& grain, const TTape& tape) {
		const double now = tape.At(grain.mStart + grain.mPosition);
		if (grain.mPosition >= grain.mFade)
			return now;
		const double e = CurveBetween(static_cast<double>(grain.mPosition) / grain.mFade, 512);
		return tape.At(grain.mPrevious + grain.mPosition) * (1.0 - e) + now * e;
	}

	void Advance(TSet& set) const {
		if (set.mRead < Rate() * 15)
			set.mRead += Normalized(97);
		for (TGrain& grain : set.mGrains) {
			if (++grain.mPosition > grain.mLength - 1) {
				grain.mPrevious = grain.mStart + grain.mLength;
				grain.mPosition = 0;
			}
		}
	}

	TSlowFollower mFollower;
	TTape mLeft, mRight, mNextLeft, mNextRight;
	TSet mMain, mNext;
	int mSwitch = 0;
};

class TSlowLofi final : public TSlowEffect {
public:
	explicit TSlowLofi(const TSettings& settings)
	    : TSlowEffect(settings),
	      mFollower(Linear(121, 0.5, 250), Linear(122, 0.5, 250), Rate()) {}

	std::pair<double, double> Process(float left, float right) override {
		const double envelope = mFollower.Process(left, right);
		const double f =
		    std::clamp(Frequency(117, 1, 22050) + envelope * (Normalized(120) - 0.5) * 2.0 * 10000.0, 1.0, 22050.0);
		const double step = 1.0 / std::max(1.0, Rate() / f);
		if (mPhase < step) {
			mLeft = left;
			mRight = right;
		}
		mPhase = std::fmod(mPhase + step, 1.0);
		return {Quantize(mLeft), Quantize(mRight)};
	}

private:
	double Quantize(float h) const {
		float depth = Linear(118, 1, 13);
		if (Choice(119, 2) == 1)
			depth = std::round(depth);
		if (depth >= 13.0f)
			return h;
		if (Choice(119, 2) == 0) {
			const double half = std::round(std::pow(2.0, static_cast<double>(depth)) / 2.0);
			return std::round(h / 32767.0 * half) / half * 32767.0;
		}
		const int q = 32767 / (static_cast<int>(std::pow(2.0, static_cast<double>(std::round(depth)))) - 1);
		return std::round((h + 32767.0) * 0.5 / q) * q * 2.0 - 32767.0;
	}

	TSlowFollower mFollower;
	double mPhase = 0.0;
	float mLeft = 0.0f, mRight = 0.0f;
};

class TSlowDistortion final : public TSlowEffect {
public:
	using TSlowEffect::TSlowEffect;

	std::pair<double, double> Process(float left, float right) override {
		return {Distort(left, mChannels[0]), Distort(right, mChannels[1])};
	}

private:
	struct TChannel {
		double mX1 = 0, mX2 = 0, mY1 = 0, mY2 = 0;
		float mOut = 0, mIn = 0;
	};

	double Distort(float in, TChannel& channel) const {
		const double drive = std::max(0.0001, static_cast<double>(Normalized(138)));
		double compensation = 0.0, d = 0.0;
		switch (Choice(137, 4)) {
		case 0: {
			const int64_t step = 1 | (4 * static_cast<int64_t>((drive * 100 + 7) * (drive * 100 + 7)));
			compensation = drive * drive * 100 + 1;
			int64_t a = (static_cast<int64_t>(std::round(in)) * step) >> 7;
			a = std::clamp<int64_t>(a, -32767, 32767) * 128 / step;
			d = Tone(static_cast<double>(a), channel);
			break;
		}
		case 1: {
			const double k = std::pow(drive * 10, 2.5), x = in / 32767.0;
			compensation = 1 - std::pow(drive / 4, 0.2);
			d = Tone((k + 1) * x / (std::abs(x) * k + 1), channel) * 32767;
			break;
		}
		case 2: {
			const double t = 1.01 - std::pow(drive, 0.2), g = drive * drive + 1;
			compensation = 1 / (t * 2.75) + 0.6;
			double x = in / 32767.0 * g;
			if (x > t || x < -t)
				x = std::abs(std::abs(std::fmod(x - t, 4 * t)) - 2 * t) - t;
			d = Tone(x, channel) * 32767;
			break;
		}
		default: {
			compensation = 1.5 - std::pow(drive / 2, 0.95);
			const double n = std::abs(std::round(in));
			const auto v = static_cast<float>(std::pow(n / 32767, 1 - drive * 0.9) * 32767);
			const auto y = static_cast<float>(v - channel.mIn + channel.mOut * 0.99);
			channel.mOut = y;
			channel.mIn = v;
			d = Tone(y, channel);
		}
		}
		return d * Normalized(140) * compensation + Normalized(141) * static_cast<double>(in);
	}

	double Tone(double x, TChannel& c) const {
		const double a = std::pow(10, (16.0 * Normalized(139) - 8) / 40), w = 2 * kPi * 1200 / Rate();
		const double beta = std::sqrt(a) / 1.5, cosine = std::cos(w), sine = std::sin(w);
		const double a0 = (a + 1) - (a - 1) * cosine + beta * sine;
		const double y =
		    (a * ((a + 1) + (a - 1) * cosine + beta * sine) * x - 2 * a * ((a - 1) + (a + 1) * cosine) * c.mX1 +
		     a * ((a + 1) + (a - 1) * cosine - beta * sine) * c.mX2 - 2 * ((a - 1) - (a + 1) * cosine) * c.mY1 -
		     ((a + 1) - (a - 1) * cosine - beta * sine) * c.mY2) /
		    a0;
		c.mX2 = c.mX1;
		c.mX1 = x;
		c.mY2 = c.mY1;
		c.mY1 = y;
		return y;
	}

	std::array<TChannel, 2> mChannels;
};

class TSlowGater final : public TSlowEffect {
public:
	using TSlowEffect::TSlowEffect;

	void Start() override {
		mLastStep = -1;
		mFrom = 1.0f;
		mTo = Level(0);
		mFadeCount = 0;
		mCounter = 0;
	}

	void Retrigger() override { mCounter = 0; }

	std::pair<double, double> Process(float left, float right) override {
		const int length = std::max(OneMillisecond(), static_cast<int>(Bar(159) / BeatTime(158, 159, 4, 256)));
		const int step = mCounter++ / length % static_cast<int>(std::round(Linear(160, 2, 16)));
		if (step != mLastStep && (mFadeCount == 0 || mFadeCount >= mFadeLength)) {
			mLastStep = step;
			mFadeLength =
			    std::max(OneMillisecond(), static_cast<int>(std::round(static_cast<float>(length) * Normalized(157))));
			mFadeCount = 0;
			mFrom = mTo;
			mTo = Level(step);
		}
		double gain = mTo;
		if (mFadeCount < mFadeLength) {
			const int size = PowerOfTwoAtLeast(static_cast<int>(std::round(Rate() / 44100.0 * 128)));
			const double t = CurveBetween(mFadeCount++ * (1.0 / mFadeLength), size);
			gain = mFrom * (1.0 - t) + mTo * t;
		}
		return {left * gain, right * gain};
	}

private:
	float Level(int step) const;

	int mLastStep = -1, mFadeLength = 0, mFadeCount = 0, mCounter = 0;
	float mFrom = 1.0f, mTo = 1.0f;
	const TVortelScene* mpScene = nullptr;
	friend class TSlowEffect;
};

float TSlowGater::Level(int step) const {
	return mpScene->GaterStep(step);
}

class TSlowDelay final : public TSlowEffect {
public:
	explicit TSlowDelay(const TSettings& settings) : TSlowEffect(settings) {
		const auto size = static_cast<std::size_t>(PowerOfTwoAtLeast(static_cast<int>(Rate() * 2.8125)));
		for (auto& line : mLines)
			line.resize(size);
	}

	void Start() override {
		for (auto& line : mLines)
			std::fill(line.begin(), line.end(), 0.0f);
		mCurrent = {Target(0), Target(1)};
	}

	void Retrigger() override {}

	std::pair<double, double> Process(float left, float right) override {
		const double slew = Normalized(180);
		const double glide = std::clamp(slew * slew * 0.002 * 44100 / Rate(), 1e-5, 0.002);
		std::array<double, 2> wet{};
		const std::array<float, 2> in{left, right};
		for (std::size_t side = 0; side < 2; ++side) {
			mCurrent[side] = glide * Target(static_cast<int>(side)) + mCurrent[side] * (1.0 - glide);
			auto& line = mLines[side];
			const auto size = static_cast<int>(line.size());
			double r = mWrite - mCurrent[side];
			if (r < 0)
				r += size;
			const int i = static_cast<int>(r);
			const double t = r - i;
			const auto at = [&](int index) -> double { return line[static_cast<std::size_t>((index + size) % size)]; };
			const double a = at(i - 1), b = at(i), c = at(i + 1), d = at(i + 2);
			const double y =
			    b + t * ((c - a) / 2 + t * (a - 2.5 * b + 2 * c - 0.5 * d + t * (1.5 * (b - c) + 0.5 * (d - a))));
			line[static_cast<std::size_t>(mWrite)] =
			    static_cast<float>(Normalized(181) * in[side] + Normalized(179) * y);
			wet[side] = y;
		}
		mWrite = (mWrite + 1) % static_cast<int>(mLines[0].size());
		return {left + Normalized(183) * wet[0], right + Normalized(183) * wet[1]};
	}

private:
	double Target(int side) const {
		const double t = Bar(178) / BeatTime(177, 178, 4, 256);
		const double s = Normalized(182) * 2.0 - 1.0;
		const double longer = t + (side == 1 ? std::max(s, 0.0) : std::max(-s, 0.0)) * t * 0.5;
		return std::clamp(
		    longer, static_cast<double>(static_cast<int>(Rate() * 0.001)), static_cast<int>(Rate() * 2.8125) - 1.0);
	}

	std::array<std::vector<float>, 2> mLines;
	std::array<double, 2> mCurrent{};
	int mWrite = 0;
};

class TSlowShuffler final : public TSlowEffect {
public:
	explicit TSlowShuffler(const TSettings& settings) : TSlowEffect(settings) {
		mShortest = static_cast<int>(std::round(Rate() * 0.001 * 0.25));
		mLongest = static_cast<int>(std::round(Rate() * 0.001 * 2));
		for (TSide& side : mSides)
			side.mSamples.resize(static_cast<std::size_t>(static_cast<int>(Rate() * 7.5) + mLongest));
	}

	/// The draws begin where the device's generator stands: at its first state, less what its construction drew.
	void Seed(uint32_t seed) { mState = seed; }

	void Start() override {
		for (TSide& side : mSides) {
			side.mReadA = side.mReadB = side.mWrite = side.mTail = 0;
			side.mDirectionA = side.mDirectionB = 1;
			side.mRemaining = 0;
		}
		Retrigger();
	}

	void Retrigger() override {
		mCounter = 0;
		for (TSide& side : mSides) {
			side.mTail = side.mWrite;
			side.mWrite = 0;
			Jump(side, 0, 1);
		}
		Choose();
	}

	std::pair<double, double> Process(float left, float right) override {
		const std::array<float, 2> in{left, right};
		for (std::size_t i = 0; i < 2; ++i) {
			TSide& side = mSides[i];
			side.mSamples[static_cast<std::size_t>(side.mWrite)] = in[i];
			if (side.mTail < side.Size())
				side.mSamples[static_cast<std::size_t>(side.mTail)] = in[i];
		}
		if (mCounter == 0)
			Decide();
		const std::pair<double, double> out{Read(mSides[0]), Read(mSides[1])};
		if (mCounter < mSliceLength && ++mCounter == mSliceLength)
			mCounter = 0;
		return out;
	}

private:
	struct TSide {
		std::vector<float> mSamples;
		int mReadA = 0, mReadB = 0, mWrite = 0, mTail = 0, mDirectionA = 1, mDirectionB = 1, mFade = 0, mRemaining = 0;

		int Size() const { return static_cast<int>(mSamples.size()); }

		double At(int i) const { return mSamples[static_cast<std::size_t>(i)]; }
	};

	double Draw() {
		mState = (mState * 16807u) % 2147483647u;
		return mState / 2147483647.0;
	}

	void Choose() {
		const double n = Draw();
		const float low = std::min(Normalized(198), Normalized(199)), high = std::max(Normalized(198), Normalized(199));
		const auto normalized = static_cast<float>(low + n * (high - low));
		double exponent = 2.0 + normalized * 6.0;
		if (Choice(197, 4) != 0)
			exponent = std::round(exponent);
		const double length =
		    std::max(Bar(197) / static_cast<float>(std::exp2(exponent)), std::round(2.0 * Rate() * 0.001));
		mSliceLength = static_cast<int>(std::round(length));
		const int write = mSides[0].mWrite;
		const int beats = static_cast<int>(std::round(Linear(201, 1, 8)));
		const int fitting = static_cast<int>(std::min(SamplesPerBeat() * beats, static_cast<double>(write)) / length);
		mStart = write - static_cast<int>(length * std::round(Draw() * fitting));
	}

	void Decide() {
		if (Draw() > 1.0f - Normalized(202)) {
			if (mStart > mSides[0].mWrite)
				mStart = 0;
		} else if (Draw() > 1.0f - Normalized(200)) {
			Choose();
		} else {
			mStart = mSides[0].mWrite;
		}
		const int direction = Draw() > 1.0f - Normalized(203) ? -1 : 1;
		for (TSide& side : mSides)
			Jump(side, mStart, direction);
	}

	void Jump(TSide& side, int position, int direction) const {
		side.mReadB = position;
		side.mDirectionB = direction;
		const double d =
		    std::abs((side.At(side.mReadA) + 32767.0) / 2 / 65536 - (side.At(position) + 32767.0) / 2 / 65536);
		const double w = (std::pow(16.0, std::pow(d, 0.1)) - 1) / 15;
		side.mFade = side.mRemaining = mShortest + static_cast<int>(std::round(w * (mLongest - mShortest)));
	}

	double Read(TSide& side) const {
		double y = side.At(side.mReadA);
		if (side.mRemaining < 1) {
			side.mReadA += side.mDirectionA;
		} else {
			const double e = CurveBetween(static_cast<double>(side.mFade - side.mRemaining) / side.mFade, mLongest);
			y = y * (1.0 - e) + side.At(side.mReadB) * e;
			side.mReadA += side.mDirectionA;
			side.mReadB += side.mDirectionB;
			if (--side.mRemaining == 0) {
				side.mReadA = side.mReadB;
				side.mDirectionA = side.mDirectionB;
			}
		}
		Bounce(side, side.mReadA, side.mDirectionA);
		Bounce(side, side.mReadB, side.mDirectionB);
		if (++side.mWrite == side.Size())
			side.mWrite = 0;
		if (side.mTail < side.Size())
			++side.mTail;
		return y;
	}

	static void Bounce(const TSide& side, int& position, int& direction) {
		if (position < 0) {
			position = 0;
			direction = 1;
		} else if (position >= side.Size()) {
			position = side.Size() - 1;
			direction = -1;
		}
	}

	std::array<TSide, 2> mSides;
	int mShortest = 0, mLongest = 0, mCounter = 0, mSliceLength = 0, mStart = 0;
	uint32_t mState = 4711;
};

} // namespace

float TSlowEffect::Linear(int id, double low, double high) const {
	return static_cast<float>(low + Normalized(id) * (high - low));
}

float TSlowEffect::Frequency(int id, double low, double high) const {
	const double n = Normalized(id);
	return static_cast<float>(n <= 0.0 ? low : low + (high - low) * (std::pow(100.0, n) - 1.0) / 99.0);
}

float TSlowEffect::BeatTime(int id, int modeId, double low, double high) const {
	double exponent = std::log2(low) + Normalized(id) * (std::log2(high) - std::log2(low));
	if (Choice(modeId, 4) != 0)
		exponent = std::round(exponent);
	return static_cast<float>(std::clamp(std::exp2(exponent), low, high));
}

int TSlowEffect::Choice(int id, int choices) const {
	return static_cast<int>(std::round(static_cast<float>(choices - 1) * Normalized(id)));
}

double TSlowEffect::Bar(int modeId) const {
	const double bar = 4.0 * SamplesPerBeat();
	const int mode = Choice(modeId, 4);
	return mode == 3 ? bar * 1.5 : mode == 2 ? bar / 1.5 : bar;
}

std::unique_ptr<TSlowEffect> TSlowEffect::Make(int device, const TSettings& settings) {
	switch (device) {
	case 1:
		return std::make_unique<TSlowModulator>(settings);
	case 2:
		return std::make_unique<TSlowTapeStop>(settings);
	case 4:
		return std::make_unique<TSlowReverser>(settings);
	case 5:
		return std::make_unique<TSlowStretcher>(settings);
	case 6:
		return std::make_unique<TSlowLofi>(settings);
	case 7:
		return std::make_unique<TSlowDistortion>(settings);
	case 8: {
		auto gater = std::make_unique<TSlowGater>(settings);
		gater->mpScene = settings.mpScene;
		return gater;
	}
	case 9:
		return std::make_unique<TSlowDelay>(settings);
	case 10:
		return std::make_unique<TSlowShuffler>(settings);
	default:
		return nullptr;
	}
}
