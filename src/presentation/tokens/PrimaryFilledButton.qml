/// The button of the action that a screen is for.
ButtonBase { fill: Colors.cta }
