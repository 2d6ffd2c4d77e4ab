#pragma once

namespace Vidtips {

class VTView;
class VTWidget;

/**
 * Has Qt find what stands for tips on the accessibility bus, and tells there what becomes of them. Nothing is
 * made and nothing is told before assistive technology asks.
 */
namespace VTAccessibility {

/** Makes tips known to Qt's accessibility. Once per application object; calls after the first do nothing. */
void install();

/**
 * Tells that @p view has other content: the tip has another name and description, and one that is on screen
 * is presented anew, as screen readers present tips when they appear.
 */
void contentHasChanged(VTView *view);

/** Tells that the tip of @p view has another name. */
void titleHasChanged(VTView *view);

/** Tells that @p tip is no tool tip any more: clients remember what an object is, so it becomes another one.
 */
void hasBecomeDialog(VTWidget *tip);

} // namespace VTAccessibility

} // namespace Vidtips
