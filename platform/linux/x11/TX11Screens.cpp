// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Screens.h"

#include "framework/foundation/text/TReadableException.h"

#include <charconv>
#include <cmath>
#include <xcb/randr.h>

namespace {

constexpr int kUsualDpi = 96;

bool HasRandr(const TX11Connection& connection) {
	const auto* extension = xcb_get_extension_data(connection.Xcb(), &xcb_randr_id);
	if (!extension || !extension->present)
		return false;
	const auto version =
	    connection.Reply(xcb_randr_query_version_reply, xcb_randr_query_version(connection.Xcb(), 1, 5));
	return version && (version->major_version > 1 || version->minor_version >= 5);
}

/// All desktops' work area as the window manager gives it for the first one.
TRectT<int> WorkArea(const TX11Connection& connection) {
	const auto values =
	    connection.Property(connection.Root(), connection.Atom(TX11Atom::kNetWorkArea), XCB_ATOM_CARDINAL);
	if (values.size() < 4)
		return {0, 0, connection.Screen().width_in_pixels, connection.Screen().height_in_pixels};
	return {
	    static_cast<int>(values[0]), static_cast<int>(values[1]), static_cast<int>(values[2]),
	    static_cast<int>(values[3])};
}

TString DeviceName(const TX11Connection& connection) {
	xcb_connection_t* xcb = connection.Xcb();
	const auto providers =
	    connection.Reply(xcb_randr_get_providers_reply, xcb_randr_get_providers(xcb, connection.Root()));
	if (!providers || providers->num_providers == 0)
		return {};
	const xcb_randr_provider_t first = xcb_randr_get_providers_providers(providers.get())[0];
	const auto info =
	    connection.Reply(xcb_randr_get_provider_info_reply, xcb_randr_get_provider_info(xcb, first, XCB_CURRENT_TIME));
	if (!info)
		return {};
	return TString(std::string_view(xcb_randr_get_provider_info_name(info.get()), info->name_len), kPlatformEncoding);
}

TList<TScreen> ReadScreens(const TX11Connection& connection) {
	const xcb_screen_t& root = connection.Screen();
	const TRectT<int> workArea = WorkArea(connection);
	const int resourceDpi = TX11Screens::DpiOfResources(
	    connection.TextProperty(connection.Root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING));
	TList<TScreen> screens;
	const auto append = [&](const TRectT<int>& bounds, int millimetres, const TString& device) {
		const TRectT<int> inside = bounds.Intersected(workArea);
		screens.Append(
		    {bounds, inside.IsEmpty() ? bounds : inside,
		     resourceDpi != 0 ? resourceDpi : TX11Screens::DpiOfSize(bounds.mWidth, millimetres), device});
	};
	if (HasRandr(connection)) {
		const auto monitors = connection.Reply(
		    xcb_randr_get_monitors_reply, xcb_randr_get_monitors(connection.Xcb(), connection.Root(), true));
		const TString device = DeviceName(connection);
		if (monitors)
			for (auto i = xcb_randr_get_monitors_monitors_iterator(monitors.get()); i.rem > 0;
			     xcb_randr_monitor_info_next(&i))
				append(
				    {i.data->x, i.data->y, i.data->width, i.data->height},
				    static_cast<int>(i.data->width_in_millimeters), device);
	}
	if (screens.IsEmpty() && !connection.IsBroken())
		append({0, 0, root.width_in_pixels, root.height_in_pixels}, root.width_in_millimeters, {});
	return screens;
}

} // namespace

int TX11Screens::DpiOfResources(std::string_view resources) {
	constexpr std::string_view kKey = "Xft.dpi:";
	while (!resources.empty()) {
		const std::string_view line = resources.substr(0, resources.find('\n'));
		resources.remove_prefix(std::min(line.size() + 1, resources.size()));
		if (!line.starts_with(kKey))
			continue;
		const std::size_t start = line.find_first_not_of(" \t", kKey.size());
		double dpi = 0;
		if (start != line.npos)
			std::from_chars(line.data() + start, line.data() + line.size(), dpi);
		return dpi >= 24 && dpi <= 1000 ? static_cast<int>(std::lround(dpi)) : 0;
	}
	return 0;
}

int TX11Screens::DpiOfSize(int pixels, int millimetres) {
	if (millimetres <= 0)
		return kUsualDpi;
	const int dpi = static_cast<int>(std::lround(pixels * 25.4 / millimetres));
	return dpi >= 60 && dpi <= 500 ? dpi : kUsualDpi; // televisions and virtual machines make figures up
}

void TX11Screens::Connect(TX11Connection& connection) {
	mpConnection = &connection;
	xcb_connection_t* xcb = connection.Xcb();
	const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
	xcb_change_window_attributes(xcb, connection.Root(), XCB_CW_EVENT_MASK, &mask);
	mFirstEvent = 0;
	if (HasRandr(connection)) {
		mFirstEvent = xcb_get_extension_data(xcb, &xcb_randr_id)->first_event;
		xcb_randr_select_input(
		    xcb, connection.Root(),
		    XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
		        XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
	}
	mScreens = ReadScreens(connection);
	mIsKnown = true;
}

bool TX11Screens::HandleEvent(const xcb_generic_event_t& event) {
	const int type = event.response_type & 0x7F;
	if (type == XCB_PROPERTY_NOTIFY) {
		const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
		if (change.window != mpConnection->Root())
			return false;
		mMayHaveChanged = mMayHaveChanged || change.atom == XCB_ATOM_RESOURCE_MANAGER ||
		                  change.atom == mpConnection->Atom(TX11Atom::kNetWorkArea);
		return true;
	}
	if (mFirstEvent == 0 || (type != mFirstEvent && type != mFirstEvent + XCB_RANDR_NOTIFY))
		return false;
	mMayHaveChanged = true;
	return true;
}

bool TX11Screens::TakeChange() {
	if (!std::exchange(mMayHaveChanged, false))
		return false;
	TList<TScreen> now = ReadScreens(*mpConnection);
	if (now.IsEmpty() || now == mScreens)
		return false;
	mScreens = std::move(now);
	return true;
}

const TList<TScreen>& TX11Screens::All() const {
	if (!mIsKnown) {
		mIsKnown = true;
		try {
			mScreens = ReadScreens(TX11Connection());
		} catch (const TReadableException&) {
			mScreens.Clear();
		}
	}
	return mScreens;
}
