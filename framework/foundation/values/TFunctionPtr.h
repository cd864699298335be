// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

/// A function together with the object it is called on. Small, copied as bytes, never allocates.
///
/// Two are equal when target and function are equal, which is how a registration is found again:
///
///     TFunctionPtr<void, int> callback(this, &TThing::OnChange);
///     callback(3); // OnChange(3)
///
/// Does not own the target. The target is converted to the class that declares the method, so methods of any base of
/// a class with several bases are called on the right address.
template <class R, class... TArguments>
class TFunctionPtr {
public:
	constexpr TFunctionPtr() noexcept = default;

	constexpr TFunctionPtr(std::nullptr_t) noexcept {}

	template <class T, class U>
	requires std::is_convertible_v<T*, U*> TFunctionPtr(T* target, R (U::*method)(TArguments...))
	noexcept : TFunctionPtr(static_cast<U*>(target), method, &CallMethod<U*, decltype(method)>) {}

	template <class T, class U>
	requires std::is_convertible_v<const T*, const U*>
	TFunctionPtr(const T* target, R (U::*method)(TArguments...) const)
	noexcept
	    : TFunctionPtr(const_cast<U*>(static_cast<const U*>(target)), method, &CallMethod<const U*, decltype(method)>) {
	}

	/// The function receives the target first.
	template <class T>
	TFunctionPtr(T* target, R (*function)(std::type_identity_t<T>*, TArguments...)) noexcept
	    : TFunctionPtr(target, function, &CallWithTarget<T>) {}

	TFunctionPtr(R (*function)(TArguments...)) noexcept : TFunctionPtr(nullptr, function, &CallFunction) {}

	/// Must not be empty.
	R operator()(TArguments... arguments) const { return mpCall(*this, std::forward<TArguments>(arguments)...); }

	/// Null for a plain function. The address of the part of the object that declares the method.
	void* Target() const noexcept { return mpTarget; }

	explicit operator bool() const noexcept { return mpCall != nullptr; }

	friend bool operator==(const TFunctionPtr&, const TFunctionPtr&) noexcept = default;

private:
	using TCall = R (*)(const TFunctionPtr&, TArguments&&...);
	struct TAnyClass;
	// The unused bytes stay zero, so that functions can be compared as bytes.
	using TFunctionBytes = std::array<std::byte, sizeof(void (TAnyClass::*)())>;

	template <class F>
	TFunctionPtr(void* target, F function, TCall call) noexcept {
		static_assert(sizeof(F) <= sizeof(TFunctionBytes));
		if (!function)
			return;
		mpTarget = target;
		mpCall = call;
		std::memcpy(mFunction.data(), &function, sizeof(F));
	}

	template <class F>
	F Function() const noexcept {
		F function;
		std::memcpy(&function, mFunction.data(), sizeof(F));
		return function;
	}

	template <class TTarget, class F>
	static R CallMethod(const TFunctionPtr& self, TArguments&&... arguments) {
		return (static_cast<TTarget>(self.mpTarget)->*self.Function<F>())(std::forward<TArguments>(arguments)...);
	}

	template <class T>
	static R CallWithTarget(const TFunctionPtr& self, TArguments&&... arguments) {
		using F = R (*)(T*, TArguments...);
		return self.Function<F>()(static_cast<T*>(self.mpTarget), std::forward<TArguments>(arguments)...);
	}

	static R CallFunction(const TFunctionPtr& self, TArguments&&... arguments) {
		return self.Function<R (*)(TArguments...)>()(std::forward<TArguments>(arguments)...);
	}

	void* mpTarget = nullptr;
	TCall mpCall = nullptr;
	TFunctionBytes mFunction{};
};
